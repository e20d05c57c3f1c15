// The pages' records, buttons, layout and texts, as values.
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <set>
#include <string>

#include "ui/dialog/rules/Closing.h"
#include "ui/dialog/rules/FolderCheck.h"
#include "ui/dialog/rules/LinkTargets.h"
#include "ui/dialog/rules/PageLayout.h"
#include "ui/dialog/rules/PromptTexts.h"

namespace pdx {
namespace {

TEST(Pages, EachPageShowsItsControls) {
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
        for (int32_t control = 1000; control < 1020; ++control)
            EXPECT_EQ(isShownOnPage(PageKind{kind}, control), controls.contains(control)) << kind << " " << control;
    EXPECT_EQ(std::set<int32_t>(std::begin(pageControls), std::end(pageControls)).size(), 15u);
}

TEST(Prompts, EachButtonReturnsTheResultOfItsSet) {
    constexpr int32_t answers[][3] = {{1, 0, 0}, {1, 2, 0}, {3, 4, 5},   {6, 7, 2},
                                      {6, 7, 0}, {4, 2, 0}, {2, 10, 11}, {0, 0, 0}};
    for (uint32_t set = 0; set < std::size(answers); ++set) {
        const uint32_t flags = 0xE0000010 | set;
        EXPECT_EQ((std::array{ButtonResult(flags, 1007), ButtonResult(flags, 1012), ButtonResult(flags, 1013)}),
                  std::to_array(answers[set]))
            << set;
        EXPECT_EQ(ButtonResult(flags, 1008), 0);
    }
    const std::map<int32_t, std::wstring> keys = {
        {1, L"INSTALLER_OK"},    {2, L"INSTALLER_CANCEL"},     {3, L"INSTALLER_ABORT"},
        {4, L"INSTALLER_RETRY"}, {5, L"INSTALLER_IGNORE"},     {6, L"INSTALLER_YES"},
        {7, L"INSTALLER_NO"},    {10, L"INSTALLER_TRY_AGAIN"}, {11, L"INSTALLER_CONTINUE"}};
    for (int32_t result = -1; result < 13; ++result)
        EXPECT_EQ(defaultButtonKey(result), keys.contains(result) ? keys.at(result) : L"") << result;
}

TEST(Prompts, AnErrorsCodeChoosesItsText) {
    const struct {
        uint32_t type, code;
        std::wstring_view title, body;
    } rows[] = {
        {0x7FF, 1150, L"INSTALLER_ERROR_OS_TITLE", L"INSTALLER_ERROR_OS"},
        {0x7FF, 1152, L"INSTALLER_ERROR_TITLE", L"INSTALLER_ERROR_SINGLE_INSTANCE"},
        {1, 1336, L"INSTALLER_ERROR_DISK_SPACE_TITLE", L"INSTALLER_ERROR_DISK_SPACE"},
        {1, 1601, L"INSTALLER_ERROR_DISK_SPACE_TITLE", L"INSTALLER_ERROR_DISK_SPACE"},
        {0, 1602, L"ERROR_INSTALLER_ELEVATED-PERMISSIONS_TITLE",
         L"ERROR_INSTALLER_ELEVATED-PERMISSIONS_AUTHENTICATED_BODY"},
        {1, 1602, L"INSTALLER_ERROR_UNKNOWN_TITLE", L"INSTALLER_ERROR_UNKNOWN"},
        {1, 25000, L"INSTALLER_ERROR_INSTALLATION-TIMEOUT_TITLE", L"INSTALLER_ERROR_INSTALLATION-TIMEOUT_BODY"},
        {0, 1603, L"INSTALLER_ERROR_UNKNOWN_TITLE", L"INSTALLER_ERROR_UNKNOWN"},
    };
    for (const auto& row : rows) {
        const Prompt prompt = errorPrompt(row.type, row.code, 0xF5, 7);
        EXPECT_EQ(prompt.title, row.title) << row.code;
        EXPECT_EQ(prompt.body, row.body) << row.code;
        EXPECT_EQ(prompt.flags, 0x80000015u) << "the error's icon in place of the engine's";
        EXPECT_EQ(prompt.defaultResult, 7);
    }
}

TEST(Closing, CrossAndEscapeActByTheTable) {
    using enum CloseAction;
    constexpr auto ordinary = PageRole::ordinary, question = PageRole::closeQuestion, report = PageRole::reportUnderWay;
    const struct {
        ClosingFacts facts;  // page, one button, close prompt open, uninstalls, asks the user
        CloseAction cross, escape;
    } rows[] = {
        {{ordinary, false, false, false, true}, ask, ask},
        {{ordinary, true, false, false, true}, ask, firstButton},
        {{ordinary, false, false, false, false}, stop, nothing},
        {{question, false, true, false, true}, stop, firstButton},
        {{ordinary, false, true, false, true}, stop, nothing},
        {{ordinary, true, true, false, true}, stop, firstButton},
        {{ordinary, false, false, true, true}, stop, nothing},
        {{ordinary, true, false, true, true}, stop, firstButton},
        {{ordinary, false, false, true, false}, stop, nothing},
        {{report, false, false, false, true}, hide, hide},
        {{report, false, false, true, true}, hide, hide},
        {{report, false, false, false, false}, hide, hide},
    };
    for (const auto& row : rows) {
        const CloseActions found = closeActions(row.facts);
        EXPECT_EQ(found.cross, row.cross) << &row - rows;
        EXPECT_EQ(found.escape, row.escape) << &row - rows;
    }
    EXPECT_TRUE(hasOneButton({.kind = pagePrompt, .flags = buttonsOk | iconError}));
    EXPECT_FALSE(hasOneButton({.kind = pagePrompt, .flags = buttonsRetryCancel}));
    EXPECT_FALSE(hasOneButton({.kind = pageProgress}));
}

TEST(Links, TheSchemeChoosesTheAction) {
    const std::tuple<std::wstring_view, std::wstring_view, std::wstring_view, LinkAction> rows[] = {
        {L"http://a/b", L"http", L"/b", LinkAction::open},
        {L"HTTPS://a/b", L"HTTPS", L"/b", LinkAction::open},
        {L"Action:openuseragreement", L"Action", L"openuseragreement", LinkAction::userAgreement},
        {L"action:openprivacypolicy", L"action", L"openprivacypolicy", LinkAction::privacyPolicy},
        {L"action:other", L"action", L"other", LinkAction::nothing},
        {L"ftp://a/b", L"ftp", L"/b", LinkAction::nothing},
        {L"calc.exe", L"", L"", LinkAction::nothing},
        {L"/en/support", L"", L"", LinkAction::showError},
    };
    for (const auto& [href, scheme, path, action] : rows) EXPECT_EQ(linkAction(href, scheme, path), action);
}

TEST(PageLayout, CentresTheButtons) {
    const Size client = {480, 450};
    const ButtonRow given = {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}};
    ButtonRow row = layoutButtons(client, {Size{100, 36}, {}, {}}, given);
    EXPECT_EQ(row.first, (Box{190, 382, 100, 36}));
    EXPECT_EQ(row.second, given.second);
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
    EXPECT_TRUE(isSpaceEnough(0x40000000));
    EXPECT_FALSE(isSpaceEnough(0x3FFFFFFF));
    EXPECT_TRUE(isSpaceEnough(0x100000000)) << "a low word of nothing";
}

TEST(InstallFolder, OpensTheChooserAboveTheProductsFolder) {
    const std::wstring_view own = L"Palisade Desktop";
    EXPECT_EQ(chooserFolder(L"D:\\Games\\Palisade Desktop", own), L"D:\\Games");
    EXPECT_EQ(chooserFolder(L"D:\\Palisade Desktop", own), L"D:\\");
    EXPECT_EQ(chooserFolder(L"D:\\Games", L"Games"), L"D:\\Games");
    EXPECT_EQ(chooserFolder(own, own), own) << "nothing would be left";
}

TEST(InstallFolder, ComparesFoldersAndAddsTheProductsOwn) {
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

TEST(LegalDocument, IsOnlineOrBesideTheProgram) {
    EXPECT_EQ(onlineLegalDocument(L"https://legal.example/", L"WEBTERMS", L"mx"),
              L"https://legal.example/legalapp/WEBTERMS/US/mx/PC/");
    EXPECT_EQ(onlineLegalDocument(L"", L"WEBTERMS", L"mx"), L"");
    EXPECT_EQ(localLegalDocument(L"WEBTERMS", L"de"), L"WEBTERMS_de.html");
}

}  // namespace
}  // namespace pdx
