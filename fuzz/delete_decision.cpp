#include <string>

#include "fuzz/Target.h"
#include "platform/rules/EntryKind.h"
#include "platform/rules/Utf8.h"
#include "state/rules/OwnFolder.h"

namespace pdx::fuzz {

void delete_decision(std::string_view input) {
    const std::wstring folder = toWide(input);
    static const SystemFolder folders[] = {{L"C:\\Windows", allBelow}, {L"C:\\Program Files", 0}, {L"C:\\Users", 1}};
    if (isOwnFolder(folder, folders)) {
        require(folder.size() > 3 && folder[1] == L':', "an own folder is below a drive");
        require(isOwnFolder(folder + L"\\", folders) && isOwnFolder(folder + L"\\a", folders),
                "what is in an own folder is own");
        require(!isOwnFolder(folder + L"\\..", folders), "no path that leads up is own");
        const SystemFolder itself[] = {{folder + L"\\a", 0}};
        require(!isOwnFolder(folder, itself), "no folder above a system folder is own");
    }
    require(!isOwnFolder(L"C:\\Windows\\" + folder, folders), "nothing in the Windows folder is own");
    // After the volume's name, which is the system's.
    if (isOwnVolumePath(L"\\Device\\HarddiskVolume1\\" + folder, folders))
        require(folder.find(L':') == std::wstring::npos, "a volume path has no stream");
    Input fields(input);
    const uint32_t attributes = fields.byte() << 4, tag = static_cast<uint32_t>(fields.byte()) << 24;
    const std::wstring final = toWide(fields.field()), expected = toWide(fields.field());
    const EntryKind kind = judgeEntry(attributes, tag, final, expected);
    require(final == expected || kind == EntryKind::elsewhere, "what is elsewhere is left alone");
}

}  // namespace pdx::fuzz
