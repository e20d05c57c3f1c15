// Numbers of the library's resources and of the dialog's controls; read by the resource compiler too.
#pragma once

#define IDD_BOOTSTRAPPER 101

#define IDC_TITLE 1001
#define IDC_BODY 1002
#define IDC_LOCATION_LABEL 1003
#define IDC_LOCATION_VALUE 1004
#define IDC_PICTURE 1005
#define IDC_PROGRESS 1006
#define IDC_ACTION1 1007
#define IDC_CLOSE 1008
#define IDC_OPTIONS 1009
#define IDC_BROWSE 1010
#define IDC_SHORTCUT 1011
#define IDC_ACTION2 1012
#define IDC_ACTION3 1013
#define IDC_QUESTION 1014
#define IDC_SUBTITLE 1015
