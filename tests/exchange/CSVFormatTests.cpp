#include "exchange/VTRCSVFormat.h"

#include "harness/TestHost.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

std::string Convert(char const* text) {
    char* p = VTRConvertToCSVString(text);
    std::string s = p ? p : "<null>";
    std::free(p);
    return s;
}

std::vector<std::string> Fields(char const* line, char sep = ';') {
    std::vector<std::string> out;
    std::vector<char> field(std::strlen(line) + 1);
    char const* cursor = line;
    while (VTRParseNextCSVField(cursor, field.data(), sep))
        out.push_back(field.data());
    return out;
}

TEST(CSVWriter, QuotesEveryFieldAndEscapesByTheFormat) {
    EXPECT_EQ("\"\"", Convert(nullptr));
    EXPECT_EQ("\"\"", Convert(""));
    EXPECT_EQ("\"\"\"\"", Convert("\"")) << "one quote becomes four";
    EXPECT_EQ("\"a\\\\b\"", Convert("a\\b"));
    EXPECT_EQ("\"line\\nnext\\r\"", Convert("line\nnext\r"));
    EXPECT_EQ("\"Hamlet; 1. Akt\"", Convert("Hamlet; 1. Akt"));

    wchar_t* w = VTRConvertToCSVStringW(L"\u0141\u00f3d\u017a \"x\"");
    EXPECT_EQ(std::wstring(L"\"\u0141\u00f3d\u017a \"\"x\"\"\""), w);
    std::free(w);
}

TEST(CSVReader, ReadsFieldsAsTheFormatSays) {
    EXPECT_EQ((std::vector<std::string>{"a", "", "b"}), Fields("a;;b"));
    EXPECT_EQ((std::vector<std::string>{"a", "b"}), Fields("a;b;")) << "a trailing separator gives no field";
    EXPECT_TRUE(Fields("   \t ").empty());
    EXPECT_EQ((std::vector<std::string>{" a", "b "}), Fields(" a;b \n"))
        << "unquoted fields keep their blanks";
    EXPECT_EQ((std::vector<std::string>{"ab", "cd", "e"}), Fields("\"ab\"cd;e"));
    EXPECT_EQ((std::vector<std::string>{"say \"hi\"", "x;y"}), Fields("\"say \"\"hi\"\"\";\"x;y\""));
    EXPECT_EQ((std::vector<std::string>{"a\\\\b", "1\\n2"}), Fields("\"a\\\\b\";\"1\\n2\""))
        << "backslash sequences stay as written";
    EXPECT_EQ((std::vector<std::string>{"x"}), Fields("\"x"))
        << "a missing closing quote ends at the text's end";
    EXPECT_EQ((std::vector<std::string>{"a", "b"}), Fields("\"a\" ; \"b\"\n"));
    EXPECT_EQ((std::vector<std::string>{"a", "", "b"}), Fields("a\t\tb", '\t'))
        << "tabs are not skipped as blanks";

    char const* nothing = nullptr;
    char field[8];
    EXPECT_FALSE(VTRParseNextCSVField(nothing, field, ';'));

    std::wstring wide = L"\"\u0141\u00f3d\u017a\";2";
    wchar_t const* cursor = wide.c_str();
    std::vector<wchar_t> wfield(wide.size() + 1);
    ASSERT_TRUE(VTRParseNextCSVField(cursor, wfield.data(), L';'));
    EXPECT_EQ(std::wstring(L"\u0141\u00f3d\u017a"), wfield.data());
    ASSERT_TRUE(VTRParseNextCSVField(cursor, wfield.data(), L';'));
    EXPECT_EQ(std::wstring(L"2"), wfield.data());
    EXPECT_FALSE(VTRParseNextCSVField(cursor, wfield.data(), L';'));
}

TEST(CSVSeparators, FillTheComboInOrderWithTheirCodes) {
    vtrtest::HostDialog dlg;
    HWND combo = dlg.AddControl(L"ComboBox", CBS_DROPDOWNLIST, 100, 0, 0, 100, 200);
    VTRFillSeparatorCB(combo, 3);
    ASSERT_EQ(4, SendMessageW(combo, CB_GETCOUNT, 0, 0));
    char text[16];
    SendMessageA(combo, CB_GETLBTEXT, 3, reinterpret_cast<LPARAM>(text));
    EXPECT_STREQ("<TAB>", text);
    EXPECT_EQ(3, SendMessageW(combo, CB_GETCURSEL, 0, 0));
    int const codes[] = {59, 44, 124, 9};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(codes[i], SendMessageW(combo, CB_GETITEMDATA, i, 0));
}

} // namespace
