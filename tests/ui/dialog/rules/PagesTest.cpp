// The pages' records, buttons, layout and texts, as values.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "ui/dialog/rules/InstallFolder.h"
#include "ui/dialog/rules/LegalDocument.h"
#include "ui/dialog/rules/PageFlow.h"
#include "ui/dialog/rules/PageLayout.h"
#include "ui/dialog/rules/PageState.h"

namespace pdx {
namespace {

TEST(Pages, ShowTheirControls) {
    const std::pair<int32_t, std::set<int32_t>> rows[] = {
        {0, {1005}},
        {1, {1001, 1002, 1005, 1007, 1009, 1008}},
        {2, {1003, 1004, 1010, 1011, 1007, 1012, 1008}},
        {3, {1001, 1015, 1002, 1005, 1007, 1012, 1008}},
        {4, {1005, 1001, 1006, 1008}},
        {5, {1007, 1008}},
        {6, {}},
    };
    for (const auto& [kind, controls] : rows)
        for (int32_t control = 1000; control <= 1016; ++control)
            EXPECT_EQ(isShownOnPage(kind, control), controls.contains(control)) << kind << " " << control;
}

TEST(Prompts, AnswerByButtonSet) {
    const int32_t results[][3] = {{1, 0, 0}, {1, 2, 0}, {3, 4, 5}, {6, 7, 2}, {6, 7, 0}, {4, 2, 0}, {2, 10, 11}};
    for (uint32_t set = 0; set < std::size(results); ++set) {
        EXPECT_EQ(ButtonResult(set | 0xE0000040, IDC_ACTION1), results[set][0]) << set;
        EXPECT_EQ(ButtonResult(set | 0xE0000040, IDC_ACTION2), results[set][1]) << set;
        EXPECT_EQ(ButtonResult(set | 0xE0000040, IDC_ACTION3), results[set][2]) << set;
        EXPECT_EQ(ButtonResult(set, 0), 0) << "the window went without an answer";
    }
    EXPECT_EQ(ButtonResult(7, IDC_ACTION1), 0);
    const std::pair<int32_t, const wchar_t*> keys[] = {
        {1, L"INSTALLER_OK"},    {2, L"INSTALLER_CANCEL"},     {3, L"INSTALLER_ABORT"},
        {4, L"INSTALLER_RETRY"}, {5, L"INSTALLER_IGNORE"},     {6, L"INSTALLER_YES"},
        {7, L"INSTALLER_NO"},    {10, L"INSTALLER_TRY_AGAIN"}, {11, L"INSTALLER_CONTINUE"},
    };
    for (const auto& [result, key] : keys) EXPECT_STREQ(defaultButtonKey(result), key);
    for (const int32_t none : {0, 8, 9, 12}) EXPECT_STREQ(defaultButtonKey(none), L"");
}

TEST(PageFlow, FollowsADetection) {
    constexpr auto full = BOOTSTRAPPER_DISPLAY_FULL;
    constexpr auto none = BOOTSTRAPPER_DISPLAY_NONE;
    EXPECT_EQ(afterDetection(BOOTSTRAPPER_ACTION_UNINSTALL, none, true), DetectFlow::uninstall);
    EXPECT_EQ(afterDetection(BOOTSTRAPPER_ACTION_INSTALL, full, true), DetectFlow::welcome);
    EXPECT_EQ(afterDetection(BOOTSTRAPPER_ACTION_INSTALL, BOOTSTRAPPER_DISPLAY_EMBEDDED, true), DetectFlow::welcome);
    EXPECT_EQ(afterDetection(BOOTSTRAPPER_ACTION_INSTALL, full, false), DetectFlow::install);
    EXPECT_EQ(afterDetection(BOOTSTRAPPER_ACTION_INSTALL, none, true), DetectFlow::install);
    EXPECT_EQ(afterDetection(BOOTSTRAPPER_ACTION_INSTALL, BOOTSTRAPPER_DISPLAY_PASSIVE, true), DetectFlow::install);
    EXPECT_EQ(afterDetection(BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED, full, true), DetectFlow::update);
    EXPECT_EQ(afterDetection(BOOTSTRAPPER_ACTION_UPDATE_REPLACE, full, true), DetectFlow::plan);
    EXPECT_TRUE(hidesForUpdate(BOOTSTRAPPER_ACTION_UPDATE_REPLACE));
    EXPECT_TRUE(hidesForUpdate(BOOTSTRAPPER_ACTION_UPDATE_REPLACE_EMBEDDED));
    EXPECT_FALSE(hidesForUpdate(BOOTSTRAPPER_ACTION_INSTALL));
}

TEST(PageFlow, NamesErrors) {
    const std::tuple<uint32_t, uint32_t, std::wstring_view, std::wstring_view> rows[] = {
        {0x7ff, 1150, L"INSTALLER_ERROR_OS_TITLE", L"INSTALLER_ERROR_OS"},
        {0x7ff, 1152, L"INSTALLER_ERROR_TITLE", L"INSTALLER_ERROR_SINGLE_INSTANCE"},
        {1, 1336, L"INSTALLER_ERROR_DISK_SPACE_TITLE", L"INSTALLER_ERROR_DISK_SPACE"},
        {1, 1601, L"INSTALLER_ERROR_DISK_SPACE_TITLE", L"INSTALLER_ERROR_DISK_SPACE"},
        {0, 1602, L"ERROR_INSTALLER_ELEVATED-PERMISSIONS_TITLE",
         L"ERROR_INSTALLER_ELEVATED-PERMISSIONS_AUTHENTICATED_BODY"},
        {1, 1602, L"INSTALLER_ERROR_UNKNOWN_TITLE", L"INSTALLER_ERROR_UNKNOWN"},
        {0x7ff, 25000, L"INSTALLER_ERROR_INSTALLATION-TIMEOUT_TITLE", L"INSTALLER_ERROR_INSTALLATION-TIMEOUT_BODY"},
        {1, 1603, L"INSTALLER_ERROR_UNKNOWN_TITLE", L"INSTALLER_ERROR_UNKNOWN"},
    };
    for (const auto& [type, code, title, body] : rows) {
        EXPECT_EQ(errorText(type, code).titleKey, title) << code;
        EXPECT_EQ(errorText(type, code).bodyKey, body) << code;
    }
    EXPECT_EQ(errorPromptFlags(0x35), 0x80000015u);
    EXPECT_EQ(errorPromptFlags(0), 0x80000010u);
}

TEST(PageLayout, CentresTheButtons) {
    const Size client = {480, 450};
    const ButtonRow given = {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}};
    ButtonRow row = layoutButtons(client, {Size{100, 36}, {}, {}}, given);
    EXPECT_EQ(row.first, (Box{190, 382, 100, 36}));
    EXPECT_EQ(row.second, given.second);
    row = layoutButtons(client, {Size{100, 36}, Size{80, 36}, {}}, given);
    EXPECT_EQ(row.first, (Box{144, 382, 100, 36}));
    EXPECT_EQ(row.second, (Box{256, 382, 80, 36}));
    row = layoutButtons(client, {Size{100, 36}, Size{80, 36}, Size{60, 36}}, given);
    EXPECT_EQ(row.first, (Box{108, 382, 100, 36}));
    EXPECT_EQ(row.second, (Box{220, 382, 80, 36}));
    EXPECT_EQ(row.third, (Box{312, 382, 60, 36}));
}

TEST(PageLayout, KeepsAPicturesProportions) {
    EXPECT_EQ(fitPicture({0, 0, 240, 112}, {120, 120}), (Box{64, 0, 112, 112}));
    EXPECT_EQ(fitPicture({0, 0, 120, 240}, {732, 540}), (Box{0, 76, 120, 88}));
    EXPECT_EQ(fitPicture({0, 0, 50, 50}, {120, 120}), (Box{0, 0, 50, 50}));
    EXPECT_EQ(fitPicture({0, 0, 50, 50}, {0, 0}), (Box{0, 0, 50, 50}));
    EXPECT_EQ(cutAtLineFeed(L"a\n\nb"), (std::pair<std::wstring, std::wstring>(L"a", L"\nb")));
    EXPECT_EQ(cutAtLineFeed(L"none"), (std::pair<std::wstring, std::wstring>()));
}

TEST(InstallFolder, NeedsOneGiB) {
    EXPECT_TRUE(isRoomy(0x40000000));
    EXPECT_FALSE(isRoomy(0x3FFFFFFF));
    EXPECT_TRUE(isRoomy(0x100000000)) << "a low word of nothing";
}

TEST(InstallFolder, OpensTheChooserAroundTheProductsOwn) {
    EXPECT_TRUE(endsInProductFolder(L"D:\\Palisade Desktop", L"Palisade Desktop"));
    EXPECT_FALSE(endsInProductFolder(L"Palisade Desktop", L"Palisade Desktop")) << "nothing would be left";
    EXPECT_FALSE(endsInProductFolder(L"D:\\Games", L"Games"));
}

TEST(InstallFolder, KnowsTheOlderClientsOwn) {
    EXPECT_TRUE(isAtOrUnder(L"c:\\palisad", L"c:\\palisad"));
    EXPECT_TRUE(isAtOrUnder(L"c:\\palisad\\sub", L"c:\\palisad"));
    EXPECT_FALSE(isAtOrUnder(L"c:\\palisade", L"c:\\palisad"));
    EXPECT_FALSE(isAtOrUnder(L"c:\\pal", L"c:\\palisad"));
    EXPECT_FALSE(isAtOrUnder(L"c:\\palisad", L""));
    EXPECT_EQ(productFolderIn(L"D:\\", L"D:\\", true), L"D:\\Palisade Desktop");
    EXPECT_EQ(productFolderIn(L"D:\\Games", L"Games", false), L"D:\\Games\\Palisade Desktop");
    EXPECT_EQ(productFolderIn(L"D:\\Games\\Palisade Desktop", L"Palisade Desktop", false),
              L"D:\\Games\\Palisade Desktop");
    const std::wstring longest(4090, L'x');
    EXPECT_EQ(productFolderIn(longest, longest, false), longest);
}

TEST(LegalDocument, LiesOnlineOrBesideTheProgram) {
    EXPECT_EQ(onlineLegalDocument(L"https://legal.example/", L"WEBTERMS", L"mx"),
              L"https://legal.example/legalapp/WEBTERMS/US/mx/PC/");
    EXPECT_EQ(onlineLegalDocument(L"", L"WEBTERMS", L"mx"), L"");
    EXPECT_EQ(localLegalDocument(L"WEBTERMS", L"de"), L"WEBTERMS_de.html");
}

TEST(PageFlow, ShowsPromptsToAWatchingUserOnly) {
    EXPECT_TRUE(isPromptShown(BOOTSTRAPPER_DISPLAY_FULL));
    EXPECT_TRUE(isPromptShown(BOOTSTRAPPER_DISPLAY_EMBEDDED));
    for (const auto display : {BOOTSTRAPPER_DISPLAY_UNKNOWN, BOOTSTRAPPER_DISPLAY_NONE, BOOTSTRAPPER_DISPLAY_PASSIVE})
        EXPECT_FALSE(isPromptShown(display));
}

TEST(PageFlow, AnswersTheEngine) {
    EXPECT_EQ(connectionAnswer(resultOk), resultRetry);
    for (const int button : {0, 2, 4, 7}) EXPECT_EQ(connectionAnswer(button), resultCancel);
    EXPECT_EQ(exitCodeOf(0), 0u);
    EXPECT_EQ(exitCodeOf(1), 0u);
    EXPECT_EQ(exitCodeOf(static_cast<int32_t>(0x80070643)), 1u);
    EXPECT_TRUE(isRestartWanted(BOOTSTRAPPER_APPLY_RESTART_REQUIRED));
    EXPECT_TRUE(isRestartWanted(BOOTSTRAPPER_APPLY_RESTART_INITIATED));
    for (const int restart : {0, 3, -1}) EXPECT_FALSE(isRestartWanted(restart));
}

}  // namespace
}  // namespace pdx
