#include "reporting/rules/ReportContent.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

namespace pdx {
namespace {

constexpr std::string_view startMark = "@@@START@@@";
constexpr std::string_view endMark = "@@@END@@@";

}  // namespace

std::string sectionStart(std::string_view name) { return fmt::format("{}{}\r\n", startMark, name); }
std::string sectionEnd(std::string_view name) { return fmt::format("{}{}\r\n", endMark, name); }

std::string packageName(std::string_view timestamp) { return fmt::format("errorReporter_{}.gz", timestamp); }

std::string userData(const ErrorReport& report) {
    return nlohmann::json({{"Category", report.category},
                           {"UserID", report.bastionId},
                           {"Free text", report.note},
                           {"CE Number", report.ceNumber},
                           {"User Name", report.machineHash},
                           {"Client Version", report.clientVersion}})
        .dump();
}

std::string hardwareSurvey(std::string_view osName, const OsInfo& version, std::string_view architecture,
                           std::string_view machineHash) {
    // A fixed template, filled in as text: none of the values needs escaping in JSON.
    constexpr const char* survey = R"({{
    "os": {{
        "name": "{}",
        "version": "{}.{}.{}",
        "architecture": "{}"
    }},
    "system": {{
        "machineId": "{}"
    }}
}})";
    return nlohmann::json::parse(fmt::format(fmt::runtime(survey), osName, version.major, version.minor, version.build,
                                             architecture, machineHash))
        .dump();
}

}  // namespace pdx
