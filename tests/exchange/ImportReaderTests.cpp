#include "exchange/VTRCSVImportReader.h"
#include "exchange/VTRCSVFormat.h"
#include "exchange/VTRCSVImportRows.h"

#include "harness/TestHost.h"

#include "NVErrors.h"
#include "NVLanguage.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace {

std::vector<std::wstring> WideLines(std::string const& bytes, VTRCSVEncoding enc, size_t piece = 20479) {
    VTRCSVMemorySource src(bytes.data(), bytes.size());
    VTRCSVLineReader reader(src, enc, piece);
    std::vector<std::wstring> out;
    std::wstring line;
    while (reader.ReadLine(line))
        out.push_back(line);
    return out;
}

std::vector<std::string> NarrowLines(std::string const& bytes, size_t piece = 20479) {
    VTRCSVMemorySource src(bytes.data(), bytes.size());
    VTRCSVLineReader reader(src, VTRCSV_ANSI, piece);
    std::vector<std::string> out;
    std::string line;
    while (reader.ReadLine(line))
        out.push_back(line);
    return out;
}

std::string Utf16(std::wstring const& text, bool bBE) {
    std::string out;
    for (wchar_t c : text) {
        unsigned char lo = static_cast<unsigned char>(c & 0xFF), hi = static_cast<unsigned char>(c >> 8);
        out.push_back(static_cast<char>(bBE ? hi : lo));
        out.push_back(static_cast<char>(bBE ? lo : hi));
    }
    return out;
}

TEST(ImportReader, MarksDecideTheEncoding) {
    auto enc = [](std::string const& s) {
        return VTRCSVEncodingFromMark(reinterpret_cast<unsigned char const*>(s.data()), s.size());
    };
    EXPECT_EQ(VTRCSV_UTF8, enc("\xEF\xBB\xBF"));
    EXPECT_EQ(VTRCSV_ANSI, enc("\xEF\xBB")) << "a UTF-8 mark needs all three bytes";
    EXPECT_EQ(VTRCSV_UTF16LE, enc("\xFF\xFE"));
    EXPECT_EQ(VTRCSV_UTF16BE, enc("\xFE\xFF"
                                  "a"));
    EXPECT_EQ(VTRCSV_ANSI, enc("\xFF")) << "one byte is always 8-bit";
    EXPECT_EQ(VTRCSV_ANSI, enc("a;b"));
}

TEST(ImportReader, DecodesEveryEncodingToTheSameLines) {
    std::wstring const text = L"\uFEFFName;\u0141\u00f3d\u017a\r\n\r\n\"\U0001F600\";x\n\uFEFFlast";
    std::vector<std::wstring> const expected = {L"Name;\u0141\u00f3d\u017a", L"", L"\"\U0001F600\";x",
                                                L"last"};
    std::string utf8 =
        "\xEF\xBB\xBFName;\xC5\x81\xC3\xB3\x64\xC5\xBA\r\n\r\n\"\xF0\x9F\x98\x80\";x\n\xEF\xBB\xBFlast";
    EXPECT_EQ(expected, WideLines(utf8, VTRCSV_UTF8)) << "marks at the start and in the middle are dropped";
    EXPECT_EQ(expected, WideLines(Utf16(text, false), VTRCSV_UTF16LE));
    EXPECT_EQ(expected, WideLines(Utf16(text, true), VTRCSV_UTF16BE));
    std::string swapped = Utf16(text, true);
    VTRCSVSwapBytePairs(reinterpret_cast<unsigned char*>(&swapped[0]), swapped.size());
    EXPECT_EQ(Utf16(text, false), swapped);

    NVSetCurCodePage(1252);
    EXPECT_EQ((std::vector<std::string>{"Gr\xFC\xDF;a", "b"}), NarrowLines("Gr\xFC\xDF;a\r\nb\r\n"));
    EXPECT_EQ((std::vector<std::wstring>{L"Gr\u00fc\u00df;a"}), WideLines("Gr\xFC\xDF;a", VTRCSV_ANSI))
        << "8-bit text read wide goes through the code page";
}

TEST(ImportReader, SurvivesBrokenBytes) {
    EXPECT_EQ((std::vector<std::wstring>{L"a\uFFFDb\uFFFD\uFFFDc\uFFFD"}), WideLines("a\x80"
                                                                                     "b\xE2\x82"
                                                                                     "c\xF0",
                                                                                     VTRCSV_UTF8))
        << "stray continuation, cut sequence, lead byte at the end";
    EXPECT_EQ((std::vector<std::wstring>{L"\uFFFD\uFFFD\uFFFD"}), WideLines("\xED\xA0\x80", VTRCSV_UTF8))
        << "an encoded surrogate half is invalid";
    EXPECT_EQ((std::vector<std::wstring>{L"\uFFFD\uFFFD"}), WideLines("\xC0\xAF", VTRCSV_UTF8)) << "overlong";
    EXPECT_EQ((std::vector<std::wstring>{L"ab", L"\uFFFD"}),
              WideLines(std::string("a\0b\0\n\0x", 7), VTRCSV_UTF16LE))
        << "an odd last byte is one replacement";
    EXPECT_EQ((std::vector<std::wstring>{L"ab"}), WideLines(std::string("a\0\0b", 4), VTRCSV_UTF8));
    EXPECT_EQ((std::vector<std::string>{"ab", "c"}), NarrowLines(std::string("a\0b\n\0c\0", 7)))
        << "NUL bytes are dropped, so a marked-less UTF-16 file of ASCII still reads";
    EXPECT_EQ((std::vector<std::string>{"a\rb", "", "\rc"}), NarrowLines("a\rb\r\n\n\rc\r\r"))
        << "only a line feed ends a line; trailing CRs go";
    EXPECT_TRUE(NarrowLines("").empty());
    EXPECT_EQ((std::vector<std::string>{""}), NarrowLines("\n"));
}

TEST(ImportReader, LongLinesComeInPieces) {
    std::string line(25, 'x');
    std::vector<std::string> pieces = NarrowLines(line + "\nend", 10);
    EXPECT_EQ((std::vector<std::string>{"xxxxxxxxxx", "xxxxxxxxxx", "xxxxx", "end"}), pieces);
    EXPECT_EQ((std::vector<std::string>{"123456789", ""}), NarrowLines("123456789\n", 9))
        << "a line feed that doesn't fit is a line of its own";
    std::string big(200000, 'y');
    std::vector<std::wstring> wide = WideLines(big, VTRCSV_UTF8, 65535);
    ASSERT_EQ(4u, wide.size());
    EXPECT_EQ(65535u, wide[0].size());
    EXPECT_EQ(200000u - 3 * 65535u, wide[3].size());

    VTRCSVMemorySource src(big.data(), big.size());
    VTRCSVLineReader reader(src, VTRCSV_UTF8, 100000);
    std::wstring first, again;
    ASSERT_TRUE(reader.ReadLine(first));
    ASSERT_TRUE(reader.Rewind());
    ASSERT_TRUE(reader.ReadLine(again));
    EXPECT_EQ(first, again) << "rewinding starts over";
}

TEST(ImportReader, FilesOpenByTheirMarkAndTheSwappedCopyGoes) {
    vtrtest::TempDir dir;
    std::wstring const text = L"\uFEFFa;\u00e4\r\nb;c\r\n";
    struct Case {
        char const* name;
        std::string bytes;
        VTRCSVEncoding enc;
    } cases[] = {
        {"le.csv", Utf16(text, false), VTRCSV_UTF16LE},
        {"be.csv", Utf16(text, true), VTRCSV_UTF16LE},
        {"u8.csv",
         "\xEF\xBB\xBF"
         "a;\xC3\xA4\r\nb;c\r\n",
         VTRCSV_UTF8},
        {"ansi.csv", "a;\xE4\r\nb;c\r\n", VTRCSV_ANSI},
    };
    NVSetCurCodePage(1252);
    for (Case const& c : cases) {
        std::string path = dir.File(c.name);
        std::ofstream(path, std::ios::binary) << c.bytes;
        std::string temp;
        {
            VTRCSVImportFile file;
            bool bMore = false;
            file.Open(path.c_str(), true, 1000, &bMore);
            EXPECT_TRUE(bMore);
            EXPECT_EQ(c.enc, file.GetEncoding()) << c.name;
            temp = file.GetTempPath();
            std::vector<std::wstring> lines;
            std::wstring line;
            while (file.Reader().ReadLine(line))
                lines.push_back(line);
            EXPECT_EQ((std::vector<std::wstring>{L"a;\u00e4", L"b;c"}), lines) << c.name;
        }
        if (std::string(c.name) == "be.csv") {
            EXPECT_FALSE(temp.empty()) << "big endian is read through a copy";
            EXPECT_EQ(INVALID_FILE_ATTRIBUTES, GetFileAttributesA(temp.c_str())) << "the copy is deleted";
        }
    }
    VTRCSVImportFile missing;
    try {
        missing.Open(dir.File("none.csv").c_str(), true, 1000);
        ADD_FAILURE() << "a missing file must throw";
    } catch (NVThrowData const& e) {
        EXPECT_NE(std::string::npos, std::string(e.GetText()).find("none.csv")) << e.GetText();
    }
}

} // namespace

// The import reads fields with its own vectorised splitter; on every line it must cut exactly the
// fields the published field parser cuts, or imports and the parser would disagree.
TEST(ImportReader, FieldSplitterAgreesWithTheFieldParser) {
    char const alphabet[] = {'a', 'b', ' ', '\t', '\n', '"', ';', ',', '1', '\xE4'};
    char const seps[] = {';', ',', ' ', '\t'};
    unsigned seed = 20261123;
    auto next = [&seed] {
        seed = seed * 1103515245u + 12345u;
        return (seed >> 16) & 0x7FFF;
    };
    for (int iCase = 0; iCase < 20000; ++iCase) {
        std::string line;
        size_t const len = next() % 70;
        for (size_t i = 0; i < len; ++i)
            line.push_back(alphabet[next() % sizeof alphabet]);
        char const cSep = seps[next() % sizeof seps];

        std::vector<std::string> expected, got;
        std::vector<char> field(line.size() + 1);
        char const* cursor = line.c_str();
        while (VTRParseNextCSVField(cursor, field.data(), cSep))
            expected.emplace_back(field.data());
        char const* fast = line.data();
        size_t cch = 0;
        while (VTRCSVNextField(fast, line.data() + line.size(), field.data(), cSep, cch)) {
            ASSERT_EQ(strlen(field.data()), cch) << "line [" << line << "]";
            got.emplace_back(field.data());
        }
        ASSERT_EQ(expected, got) << "line [" << line << "] separator [" << cSep << "]";
    }
}
