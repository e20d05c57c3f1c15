// What a scenario wants the client package to do while Windows Installer runs it: a text file, one step a line.
//
//   before-files STEP     while the installer still plans: before any change, also when it removes
//   after-files STEP      when files and registry values are there (or gone), last thing before it commits
//
// Steps, each noted with its answer in record.txt beside the script:
//   say KIND TEXT         sends TEXT to the external handler; KIND is actiondata, warning or error
//   progress TICKS MS     sends TICKS progress messages, MS milliseconds apart; a cancel answer ends the package
//   property NAME         notes the value of an installer property; before-files only
//   environment NAME      notes the value of a variable of the environment
//   dword VIEW NAME KEY   notes a DWORD of HKEY_LOCAL_MACHINE in the 32- or 64-bit view
//   exists PATH           notes "yes" or "no"
//   sharing NAME          notes how the file that a property names may be opened; before-files only
//   mark NAME             makes the file NAME beside the script
//   wait-for NAME         waits until that file is there, a minute at most
//   fail CODE             ends the custom action with that code; the package fails
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace client {

struct Step {
    std::wstring verb;
    std::wstring rest;
};

/// The steps of one stage, in order; other lines are ignored.
std::vector<Step> stepsOf(std::wstring_view script, std::wstring_view stage);

/// Removes the first word of a text and returns it.
std::wstring takeWord(std::wstring& text);

}  // namespace client
