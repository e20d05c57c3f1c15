#include "reporting/rules/ReportContent.h"

#include <nlohmann/json.hpp>

#include "fuzz/Target.h"
#include "platform/rules/Utf8.h"
#include "reporting/rules/CheckValue.h"

namespace pdx::fuzz {

void report(std::string_view input) {
    Input fields(input);
    ErrorReport report;
    for (std::string* field : {&report.note, &report.ceNumber, &report.bastionId, &report.machineHash})
        *field = toUtf8(toWide(fields.field()));
    const std::string json = userData(report);
    require(json.find_first_of("\r\n") == std::string::npos, "the section is one line");
    const auto read = nlohmann::json::parse(json);
    require(read.at("Free text") == report.note && read.at("CE Number") == report.ceNumber &&
                read.at("UserID") == report.bastionId && read.at("User Name") == report.machineHash,
            "each field arrives as it is");
    // The recurrence by its closed step: one more byte changes the value by that byte alone.
    const std::string longer = std::string(input) + 'A';
    const auto last = static_cast<uint16_t>(requestCheckValue(input) * 5 + 65);
    require(requestCheckValue(longer) == (input.size() % 2 == 1 ? last ^ 0x4B1D : last),
            "a value goes on from the last");
}

}  // namespace pdx::fuzz
