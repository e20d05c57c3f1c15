// The names of the engine's values in the log.
#pragma once

#include <cstdint>
#include <string>

#include "platform/rules/EngineTypes.h"

namespace pdx {

// Each returns the value's published name, or "<INVALID>" for a value out of range.
const char* nameOf(BOOTSTRAPPER_ACTION_STATE value);
const char* nameOf(BOOTSTRAPPER_PACKAGE_STATE value);
const char* nameOf(BOOTSTRAPPER_RELATED_OPERATION value);
const char* nameOf(BOOTSTRAPPER_RELATION_TYPE value);
const char* nameOf(BOOTSTRAPPER_REQUEST_STATE value);
const char* nameOf(BOOTSTRAPPER_FEATURE_STATE value);
const char* nameOf(BOOTSTRAPPER_ERROR_TYPE value);
const char* nameOf(BOOTSTRAPPER_APPLY_RESTART value);
const char* nameOf(BOOTSTRAPPER_CACHE_OPERATION value);

/// The name of the value that a callback's pointer points to; "<INVALID>" for a null pointer.
template <typename Value>
const char* nameOfPointed(const Value* value) {
    return value ? nameOf(*value) : "<INVALID>";
}

/// "true" or "false".
const char* nameOfBool(bool value);

/// A message box style word, such as "MB_YESNO | MB_ICONEXCLAMATION | MB_DEFBUTTON1". A button set that the platform
/// does not define becomes "<INVALID>", no icon or an unknown one "<BADICON>", an unknown default button "<BADDEFBTN>".
std::string nameOfMessageBoxStyle(uint32_t style);

}  // namespace pdx
