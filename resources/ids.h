// Numbers of the library's resources and of the dialog's controls; read by the resource compiler too.
#pragma once

#define IDD_BOOTSTRAPPER 101
