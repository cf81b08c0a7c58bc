#include "DynaArray.h"
#include "NVFormat.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string Fmt(char const* format, ...) {
    char buf[256];
    va_list args;
    va_start(args, format);
    VSNPrintf(buf, sizeof buf, format, args, 0);
    va_end(args);
    return buf;
}

TEST(SNPrintf, NumberedPlaceholdersTakeArgumentsInOrderWhateverTheirPlace) {
    // "§" as the code page byte and as the UTF-8 pair of a source literal.
    EXPECT_EQ("42 tickets for Hamlet", Fmt("\xA7"
                                           "1!d! tickets for \xA7"
                                           "2",
                                           42, "Hamlet"));
    EXPECT_EQ("For Hamlet: 42 tickets", Fmt("For §2: §1!d! tickets", 42, "Hamlet"));
    EXPECT_EQ("Hamlet, Hamlet", Fmt("§1, §1", "Hamlet"));

    wchar_t wbuf[64];
    SNPrintf(wbuf, 64, L"\u00a72 / \u00a71!u!", 4000000000u, L"Rang");
    EXPECT_EQ(std::wstring(L"Rang / 4000000000"), wbuf);
}

TEST(SNPrintf, TypedPlaceholdersAndPrintfCodes) {
    EXPECT_EQ("-5 4294967295", Fmt("§1!d! §2!u!", -5, 0xFFFFFFFFu));
    EXPECT_EQ("3.14 x 0007", Fmt("§2!.2f! x §1!04d!", 7, 3.14159));
    EXPECT_EQ("18446744073709551615", Fmt("§1!I64u!", 18446744073709551615ull));
    EXPECT_EQ("100% sold", Fmt("§1!d!% sold", 100)) << "'%' is plain text in a message";
    EXPECT_EQ("[ab   ] [  7] 1.5 ff", Fmt("[%-5s] [%3d] %.1f %x", "ab", 7, 1.5, 255));
    EXPECT_EQ("[  x]", Fmt("[%*s]", 3, "x"));
    EXPECT_EQ("wide", Fmt("%S", L"wide")) << "%S is the other width";
    EXPECT_EQ("50%", Fmt("%d%%", 50));
    EXPECT_EQ("%n stays", Fmt("%n stays"));
    EXPECT_EQ("§x and §0 stay", Fmt("§x and §0 stay"));
}

TEST(SNPrintf, CutsToTheBufferAndAlwaysTerminates) {
    char small[6];
    EXPECT_EQ(5, SNPrintf(small, sizeof small, "§1 and more", "abcdefgh"));
    EXPECT_STREQ("abcde", small);
    EXPECT_EQ(5, SNPrintf(small, sizeof small, "%d", 123456789));
    EXPECT_STREQ("12345", small);
    char one[1] = {'x'};
    EXPECT_EQ(0, SNPrintf(one, 1, "abc"));
    EXPECT_EQ('\0', one[0]);
    EXPECT_EQ(-1, SNPrintf(static_cast<char*>(nullptr), 10, "abc"));
    char buf[8] = "keep";
    EXPECT_EQ(-1, SNPrintf(buf, 0, "abc"));
    EXPECT_STREQ("keep", buf);
}

TEST(NVScanFormatString, ListsPlaceholdersWithNumbersAndTypes) {
    DynaArrayTpl<NVFormatMessageFormat, 0, 0> found;
    ASSERT_TRUE(NVScanFormatString(L"Line \u00a71!d!: '\u00a72' (\u00a71!d!)", found));
    ASSERT_EQ(3, found.GetCount());
    EXPECT_EQ(1, found.Get(0)->iNumber);
    EXPECT_EQ(std::wstring(L"d"), found.Get(0)->szFormat);
    EXPECT_EQ(5, found.Get(0)->iStart);
    EXPECT_EQ(5, found.Get(0)->iLength);
    EXPECT_EQ(2, found.Get(1)->iNumber);
    EXPECT_EQ(std::wstring(L"s"), found.Get(1)->szFormat);
    EXPECT_FALSE(NVScanFormatString(L"no placeholders, 100%", found));
    EXPECT_EQ(0, found.GetCount());
}

} // namespace
