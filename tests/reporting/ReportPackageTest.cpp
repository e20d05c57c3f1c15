#include "reporting/ReportPackage.h"

#include <gtest/gtest.h>

#include <windows.h>
// zlib.h after windows.h, whose types it uses.
#include <zlib.h>

#include "platform/Handles.h"
#include "tests/platform/TestFolder.h"

namespace pdx {
namespace {

std::string unpacked(const std::string& package) {
    z_stream stream{};
    inflateInit2(&stream, 15 + 16);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(package.data()));
    stream.avail_in = static_cast<uInt>(package.size());
    std::string content(1 << 20, '\0');
    stream.next_out = reinterpret_cast<Bytef*>(content.data());
    stream.avail_out = static_cast<uInt>(content.size());
    EXPECT_EQ(inflate(&stream, Z_FINISH), Z_STREAM_END);
    EXPECT_EQ(stream.avail_in, 0u) << "bytes after the stream";
    content.resize(stream.total_out);
    inflateEnd(&stream);
    return content;
}

/// What a package of these files holds after the two sections that it always has.
std::string packed(const ReportFiles& files, const LogBounds& bounds = {}) {
    ErrorReport report;
    buildPackage(report, files, bounds);
    EXPECT_EQ(report.package.at(8), 2) << "not at the highest level";
    const std::string content = unpacked(report.package);
    const std::string before = sectionEnd("HardwareSurvey.json");
    return content.substr(content.find(before) + before.size());
}

std::string section(const std::string& name, const std::string& bytes) {
    return sectionStart(name) + bytes + sectionEnd(name);
}

TEST(ReportPackage, HoldsEachReadableFileAndNoOther) {
    const TestFolder folder;
    EXPECT_EQ(packed({}), "");

    ReportFiles files;
    std::string wanted;
    for (int number = 100; number < 300; ++number) {
        const std::string name = "a%s{}" + std::to_string(number) + ".log";
        files.insert(folder.addFile(toWide(name), name + "\n"));
        wanted += section(name, name + "\n");
    }
    folder.addFile(L"beside.log", "not listed");
    const FileHandle locked = holdFile(folder.addFile(L"c locked.log"), GENERIC_WRITE, 0);
    files.insert({folder.path(L"c locked.log"), folder.path(L"c vanished.log"), folder.path(), L""});
    const FileHandle written =
        holdFile(folder.addFile(L"d in use.log", "so far"), GENERIC_WRITE | DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE);
    files.insert({folder.path(L"d in use.log"), folder.path(L"D IN USE.LOG")});  // one file
    wanted += section("d in use.log", "so far");
    for (const char* bytes : {"", "x"}) {
        const std::string name = std::string("e short") + bytes;
        files.insert(folder.addFile(toWide(name), bytes));
        wanted += section(name, "");
    }
    files.insert(folder.addFile(L"\u00e4\u0438\u30b2.log", std::string("\xFF\xFE"
                                                                       "a\0\n\0"
                                                                       "\xDC",
                                                                       7)));
    wanted += section("\u00e4\u0438\u30b2.log", "\uFEFFa\n");
    EXPECT_TRUE(packed(files) == wanted);
}

TEST(ReportPackage, EndsWithTheBlockThatReachesTheBound) {
    const TestFolder folder;
    const std::string block(0x40000, 'x');
    const ReportFiles files = {folder.addFile(L"a.log", block + "rest"), folder.addFile(L"b.log", "later")};
    EXPECT_TRUE(packed(files, {.bytes = 0x40001}) == section("a.log", block + "rest"));
    EXPECT_TRUE(packed(files, {.bytes = 0x40000}) == section("a.log", block));
    EXPECT_EQ(packed(files, {.time = {}}), "");
}

}  // namespace
}  // namespace pdx
