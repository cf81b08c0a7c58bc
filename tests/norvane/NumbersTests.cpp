#include "NVLanguage.h"
#include "NVNumbers.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

std::string Fmt(double value, char const* format) {
    char buf[100];
    if (!FormatNumber(value, format, buf, sizeof buf))
        return "<failed>";
    return buf;
}

class Numbers : public ::testing::Test {
protected:
    void SetUp() override { NVSetCurrentLangID(1031); }
    void TearDown() override {
        NVSetCurrentLangID(0);
        NVSetAmountsWithoutDecimalPlaces(false);
    }
};

TEST_F(Numbers, FormatWritesEveryPartOfTheFormat) {
    EXPECT_EQ("1.234.567,89", Fmt(1234567.891, "#2|1|3|,|.|1"));
    EXPECT_EQ("1,234,567.89", Fmt(1234567.891, "#2|1|3|.|,|1"));
    EXPECT_EQ("1'234'567.9", Fmt(1234567.891, "#1|1|3|.|'|1"));
    EXPECT_EQ("1234567,891", Fmt(1234567.891, "#3|1|0|,|.|1"));
    EXPECT_EQ("1234567,891", Fmt(1234567.891, "#3|1|3|,||1")) << "no separator, no groups";
    EXPECT_EQ("12,34,567.00", Fmt(1234567, "#2|1|32|.|,|1"));
    EXPECT_EQ("1234,567", Fmt(1234567, "#0|1|30|.|,|1")) << "a last group of 0 stops the grouping";
    EXPECT_EQ("1 234 567,00", Fmt(1234567, "#2|1|3|,| |1"));
    EXPECT_EQ("1.234.568", Fmt(1234567.5, "#0|1|3|,|.|1"));
    EXPECT_EQ("999", Fmt(999, "#0|1|3|,|.|1"));
    EXPECT_EQ("1.000", Fmt(999.5, "#0|1|3|,|.|1"));
    EXPECT_EQ("0,50", Fmt(0.5, "#2|1|3|,|.|1"));
    EXPECT_EQ(",50", Fmt(0.5, "#2|0|3|,|.|1"));
    EXPECT_EQ("0", Fmt(0.4, "#0|0|3|,|.|1")) << "an integer keeps its zero";
    EXPECT_EQ("1,0005", Fmt(1.0005, "#4|1|3|,|.|1"));
    EXPECT_EQ("1dec5", Fmt(1.5, "#1|1|3|dec|.|1")) << "separators of several characters";

    // The five negative orders, and no sign for what rounds to zero.
    EXPECT_EQ("(1.234,50)", Fmt(-1234.5, "#2|1|3|,|.|0"));
    EXPECT_EQ("-1.234,50", Fmt(-1234.5, "#2|1|3|,|.|1"));
    EXPECT_EQ("- 1.234,50", Fmt(-1234.5, "#2|1|3|,|.|2"));
    EXPECT_EQ("1.234,50-", Fmt(-1234.5, "#2|1|3|,|.|3"));
    EXPECT_EQ("1.234,50 -", Fmt(-1234.5, "#2|1|3|,|.|4"));
    EXPECT_EQ("0,00", Fmt(-0.004, "#2|1|3|,|.|1"));
    EXPECT_EQ("(,01)", Fmt(-0.005, "#2|0|3|,|.|0"));

    // printf's shorthand takes the language's separators.
    EXPECT_EQ("1.234,568", Fmt(1234.5678, "%.3f"));
    EXPECT_EQ("-1.234,567800", Fmt(-1234.5678, "%f"));
    EXPECT_EQ("1.235", Fmt(1234.5678, "%.0lf"));
    NVSetCurrentLangID(1033);
    EXPECT_EQ("1,234.57", Fmt(1234.5678, "%.2f"));
    EXPECT_EQ("1,234.57", Fmt(1234.5678, "#2")) << "fields left off come from the language";
    EXPECT_EQ("1234.6", Fmt(1234.5678, "#1|1|0"));

    char buf[8] = "keep";
    EXPECT_FALSE(FormatNumber(1234567.0, "#2|1|3|,|.|1", buf, sizeof buf)) << "buffer too small";
    EXPECT_STREQ("", buf);
    EXPECT_TRUE(FormatNumber(1234.5, "#1|1|3|,|.|1", buf, sizeof buf));
    EXPECT_STREQ("1.234,5", buf) << "exactly fits";
    EXPECT_FALSE(FormatNumber(NAN, "#2", buf, sizeof buf));
    EXPECT_FALSE(FormatNumber(INFINITY, "#2", buf, sizeof buf));
    EXPECT_FALSE(FormatNumber(1e300, "#2", buf, sizeof buf));
    EXPECT_FALSE(FormatNumber(1.0, "#2", nullptr, 10));
    EXPECT_FALSE(FormatNumber(1.0, "#2", buf, 0));
}

TEST_F(Numbers, DefaultFormatsComeFromTheLanguage) {
    EXPECT_STREQ("#2|1|3|,|.|1", NVGetNumberFormatString(NVNF_DEFAULT, 0, false));
    EXPECT_STREQ("#0|1|3|,|.|1", NVGetNumberFormatString(NVNF_DEFAULT, 0, true));
    EXPECT_STREQ("#2|1|0|,|.|1", NVGetNumberFormatString(NVNF_EDIT, 0, false));
    EXPECT_STREQ("#2|1|3|.|,|1", NVGetNumberFormatString(NVNF_DEFAULT, 1033, false));
    char const* first = NVGetNumberFormatString(NVNF_DEFAULT, 0, false);
    EXPECT_EQ(first, NVGetNumberFormatString(NVNF_DEFAULT, 1031, false)) << "the text stays where it is";
    EXPECT_EQ(nullptr, NVGetNumberFormatString(static_cast<NVNumberFormatStringType>(3), 0, false));

    // A null format is the default one, which follows the amounts switch.
    EXPECT_EQ("1.234,50", Fmt(1234.5, nullptr));
    EXPECT_EQ("1.234,50", Fmt(1234.5, ""));
    EXPECT_FALSE(NVGetAmountsWithoutDecimalPlaces());
    NVSetAmountsWithoutDecimalPlaces(true);
    EXPECT_TRUE(NVGetAmountsWithoutDecimalPlaces());
    EXPECT_EQ("1.235", Fmt(1234.5, nullptr));
    EXPECT_EQ("1.234,50", Fmt(1234.5, "#2")) << "an explicit format is not affected";
}

TEST_F(Numbers, ExtractGivesTheWin32Structure) {
    NUMBERFMTA nf{};
    char dec[4], thou[4];
    ASSERT_TRUE(NVExtractNumberFormat("#3|0|32|.|'|4", nf, dec, sizeof dec, thou, sizeof thou));
    EXPECT_EQ(3u, nf.NumDigits);
    EXPECT_EQ(0u, nf.LeadingZero);
    EXPECT_EQ(32u, nf.Grouping);
    EXPECT_EQ(4u, nf.NegativeOrder);
    EXPECT_EQ(dec, nf.lpDecimalSep);
    EXPECT_EQ(thou, nf.lpThousandSep);
    EXPECT_STREQ(".", dec);
    EXPECT_STREQ("'", thou);

    ASSERT_TRUE(NVExtractNumberFormat("%.1f", nf, nullptr, 0, nullptr, 0)) << "static buffers";
    EXPECT_EQ(1u, nf.NumDigits);
    EXPECT_STREQ(",", nf.lpDecimalSep);
    EXPECT_STREQ(".", nf.lpThousandSep);

    // The extracted structure formats as Windows itself does.
    for (char const* format : {"#2|1|3|,|.|0", "#0|1|3|.|,|3", "#4|0|32|.| |2", "#1|1|0|,||4"}) {
        ASSERT_TRUE(NVExtractNumberFormat(format, nf, dec, sizeof dec, thou, sizeof thou)) << format;
        for (double value : {-1234567.25, -0.75, 0.0, 0.25, 98765.5}) {
            char plain[64], windows[64];
            std::snprintf(plain, sizeof plain, "%.*f", static_cast<int>(nf.NumDigits),
                          Runden(value, nf.NumDigits));
            ASSERT_GT(GetNumberFormatA(LOCALE_INVARIANT, 0, plain, &nf, windows, sizeof windows), 0);
            EXPECT_EQ(windows, Fmt(value, format)) << format << " " << value;
        }
    }

    EXPECT_FALSE(NVExtractNumberFormat("#2|1|3|dec|.|1", nf, dec, 3, thou, sizeof thou))
        << "buffer too small";
    for (char const* bad :
         {"x", "#", "#10", "#2|2", "#2|1|3||.|1", "#2|1|3|1|.|1", "#2|1|3|,|,|1", "#2|1|3|,|.|5",
          "#2|1|3|,|.|1|9", "#2|1|3|,,,,|.|1", "#2|1|x", "%.f", "%.2d", "%.10f", "%.2f and more", "#-1"}) {
        EXPECT_FALSE(NVExtractNumberFormat(bad, nf, dec, sizeof dec, thou, sizeof thou)) << bad;
        char buf[100];
        EXPECT_FALSE(FormatNumber(1.0, bad, buf, sizeof buf)) << bad;
    }
}

// Whatever FormatNumber writes, NVIsValidDouble reads back as the rounded value.
TEST_F(Numbers, ParsingReadsWhatFormattingWrites) {
    std::vector<double> values = {0,   0.004, 0.5,    1,     12.345,       999.995,       1000,
                                  1e6, -1e6,  -0.5,   -7.25, 123456.789,   9876543210.12, -42,
                                  0.1, 0.07,  100000, 1e12,  -987654.3215, 2.675,         -2.675};
    unsigned int seed = 12345;
    for (int i = 0; i < 60; ++i) {
        seed = seed * 1103515245u + 12345u;
        double const magnitude = std::pow(10.0, static_cast<int>(seed % 12) - 3);
        seed = seed * 1103515245u + 12345u;
        values.push_back((static_cast<double>(seed % 200000) / 100000.0 - 1.0) * magnitude);
    }
    int checked = 0;
    for (char const* seps : {",|.", ".|,", ".|'", ",| ", ",|", "dec| - "}) {
        for (unsigned grouping : {0u, 3u, 32u, 30u}) {
            for (unsigned order = 0; order <= 4; ++order) {
                for (unsigned decimals : {0u, 2u, 3u}) {
                    for (unsigned lead : {0u, 1u}) {
                        char format[64];
                        std::snprintf(format, sizeof format, "#%u|%u|%u|%s|%u", decimals, lead, grouping,
                                      seps, order);
                        for (double value : values) {
                            char text[100];
                            ASSERT_TRUE(FormatNumber(value, format, text, sizeof text)) << format;
                            double back = -99;
                            char const *first = nullptr, *last = nullptr;
                            ASSERT_TRUE(NVIsValidDouble(text, format, back, &first, &last))
                                << format << " '" << text << "'";
                            EXPECT_EQ(Runden(value, decimals), back) << format << " '" << text << "'";
                            EXPECT_EQ(text, first);
                            EXPECT_EQ(text + std::strlen(text), last);
                            ++checked;
                        }
                    }
                }
            }
        }
    }
    EXPECT_GT(checked, 40000);
}

TEST_F(Numbers, ParsingAcceptsAnySignFormAndRejectsTheRest) {
    char const* german = "#2|1|3|,|.|1";
    struct Case {
        char const* text;
        double value;
    };
    for (Case c : std::vector<Case>{{"1.234,5", 1234.5},
                                    {"  -1.234.567,125  ", -1234567.125},
                                    {"1234,5", 1234.5},
                                    {"(1.234,50)", -1234.5},
                                    {"- 3", -3},
                                    {"3-", -3},
                                    {"3 -", -3},
                                    {"+3", 3},
                                    {",5", 0.5},
                                    {"5,", 5},
                                    {"0,123456", 0.123456},
                                    {"007", 7}}) {
        std::string text = c.text;
        double value = 0;
        ASSERT_TRUE(NVIsValidDouble(&text[0], german, value, nullptr, nullptr)) << c.text;
        EXPECT_EQ(c.value, value) << c.text;
        EXPECT_EQ(c.text, text) << "the text stays as it was";
    }

    std::string text = "  (12,5) ";
    double value = 0;
    char const *first = nullptr, *last = nullptr;
    ASSERT_TRUE(NVIsValidDouble(&text[0], german, value, &first, &last));
    EXPECT_EQ(2, first - text.c_str());
    EXPECT_EQ(8, last - text.c_str());

    for (char const* bad : {"",    "   ",   "1.5",   "1.23,5", "12.34.567", ".123", "1..234",   "1.234.",
                            "--1", "(1",    "1)",    "-(1)",   "- -1",      "-1-",  "1-2",      "abc",
                            "1e5", "12 34", "1,2,3", "0x10",   ",",         "-",    "1.234,5x", "(-1)"}) {
        std::string t = bad;
        double v = 42;
        EXPECT_FALSE(NVIsValidDouble(&t[0], german, v, nullptr, nullptr)) << "'" << bad << "'";
        EXPECT_EQ(42, v) << bad;
    }
    std::string english = "1,234.5";
    EXPECT_FALSE(NVIsValidDouble(&english[0], german, value, nullptr, nullptr));
    EXPECT_TRUE(NVIsValidDouble(&english[0], "#2|1|3|.|,|1", value, nullptr, nullptr));
    EXPECT_EQ(1234.5, value);
    EXPECT_FALSE(NVIsValidDouble(nullptr, german, value, nullptr, nullptr));
    EXPECT_FALSE(NVIsValidDouble(&english[0], "bad", value, nullptr, nullptr));
}

TEST_F(Numbers, RundenRoundsTheDecimalValueHalfAwayFromZero) {
    EXPECT_EQ(2.68, Runden(2.675, 2)) << "2.675 is 2.67499999... in binary";
    EXPECT_EQ(1.01, Runden(1.005, 2));
    EXPECT_EQ(8.33, Runden(8.325, 2));
    EXPECT_EQ(1.12, Runden(1.115, 2));
    EXPECT_EQ(0.05, Runden(0.045, 2));
    EXPECT_EQ(-1.0, Runden(-0.5, 0));
    EXPECT_EQ(1.0, Runden(0.5, 0));
    EXPECT_EQ(3.0, Runden(2.5, 0));
    EXPECT_EQ(-3.0, Runden(-2.5, 0));
    EXPECT_EQ(-2.68, Runden(-2.675, 2));
    EXPECT_EQ(1.0, Runden(1.4999999, 0) + 0.0);
    EXPECT_EQ(1234.568, Runden(1234.5678, 3));
    EXPECT_EQ(1235.0, Runden(1234.5, 0));
    EXPECT_EQ(0.0, Runden(0.0001, 2));
    EXPECT_EQ(0.0, Runden(0.004, 2));
    EXPECT_EQ(0.01, Runden(0.005, 2));
    EXPECT_EQ(1000.0, Runden(999.995, 2));
    EXPECT_EQ(0.3, Runden(0.1 + 0.2, 10)) << "0.30000000000000004";
    EXPECT_EQ(1e20, Runden(1e20, 2)) << "beyond the digits a double holds";
    EXPECT_EQ(123456789012.35, Runden(123456789012.345, 2));
    EXPECT_EQ(0.0, Runden(0.0, 3));
    EXPECT_TRUE(std::isnan(Runden(NAN, 2)));
    EXPECT_EQ(INFINITY, Runden(INFINITY, 2));
    for (int cents = -100000; cents <= 100000; cents += 7) {
        double const half = (cents + 0.5) / 100.0; // exactly halfway in decimal, not in binary
        double const expected = (cents >= 0 ? cents + 1 : cents) / 100.0;
        ASSERT_EQ(expected, Runden(half, 2)) << half;
        ASSERT_EQ(cents / 100.0, Runden(cents / 100.0, 2));
    }
}

// What FormatNumber wrote before its digits were computed without printf: Runden's double, written
// by printf with the places, a minus sign unless all digits are zero, and no groups.
std::string RundenPrintf(double value, unsigned int places) {
    double const rounded = Runden(value, places);
    if (!std::isfinite(value) || std::fabs(rounded) >= 1e18)
        return "<failed>";
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*f", static_cast<int>(places), std::fabs(rounded));
    bool const bNegative = rounded < 0 && buf[std::strspn(buf, "0.")] != '\0';
    return bNegative ? std::string("-") + buf : std::string(buf);
}

TEST_F(Numbers, FormatGivesRundensDigitsForEveryMagnitude) {
    std::vector<double> values = {0.0,
                                  -0.0,
                                  2.675,
                                  1.005,
                                  0.005,
                                  -0.005,
                                  0.0049999999999999,
                                  999.995,
                                  9.9999999999999995,
                                  0.1 + 0.2,
                                  123456789012.345,
                                  999999999999999.0,
                                  99999999999999.95,
                                  1e14,
                                  1e15,
                                  1e15 - 0.5,
                                  9.999999999999999e17,
                                  1e18,
                                  1e18 - 128,
                                  static_cast<double>(INT64_MAX),
                                  static_cast<double>(INT64_MIN),
                                  static_cast<double>(INT32_MAX),
                                  static_cast<double>(INT32_MIN),
                                  9007199254740991.0,
                                  9007199254740993.0,
                                  4503599627370495.5,
                                  1000000000000.125,
                                  1.000000000000125e-3,
                                  DBL_MAX,
                                  DBL_MIN,
                                  DBL_TRUE_MIN,
                                  DBL_EPSILON,
                                  1e-8,
                                  5e-10,
                                  4.9999999999999e-10,
                                  1e-20,
                                  1e-300};
    // Exact binary halves and values next to powers of ten, where digits carry.
    for (int e = -12; e <= 17; ++e) {
        double const p = std::pow(10.0, e);
        values.push_back(p);
        values.push_back(std::nextafter(p, 0.0));
        values.push_back(std::nextafter(p, 1e300));
        values.push_back(p * 0.5);
        values.push_back(p * 9.5);
        values.push_back(p * 0.9999999999999995);
    }
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> exponent(-12.0, 18.5);
    for (int i = 0; i < 20000; ++i)
        values.push_back(std::pow(10.0, exponent(rng)) * ((rng() & 1) ? -1 : 1));
    for (int i = 0; i < 20000; ++i) // cents and halves of cents, the common case of a list
        values.push_back(static_cast<double>(static_cast<long long>(rng() % 2000000001) - 1000000000) /
                         200.0);
    for (int i = 0; i < 5000; ++i) { // any bit pattern that is a finite number
        uint64_t bits = rng();
        double v;
        std::memcpy(&v, &bits, sizeof v);
        if (std::isfinite(v))
            values.push_back(v);
    }
    int failures = 0;
    for (double v : values)
        for (unsigned int places = 0; places <= 9; ++places) {
            char format[32];
            std::snprintf(format, sizeof format, "#%u|1|0|.||1", places);
            std::string const expected = RundenPrintf(v, places);
            std::string const actual = Fmt(v, format);
            if (expected != actual && ++failures <= 10)
                ADD_FAILURE() << "value " << std::hexfloat << v << std::defaultfloat << " (" << v << "), "
                              << places << " places: expected " << expected << ", got " << actual;
        }
    EXPECT_EQ(0, failures);
}

TEST_F(Numbers, FormatFillsTheLongestNumberAndItsBuffer) {
    // 18 digits grouped by ones with three-character separators: the longest text a format makes.
    std::string const longest = Fmt(-987654321987654272.0, "#9|1|1|,,,|...|0");
    std::string expected = "(";
    for (char c : std::string("987654321987654272")) {
        if (expected.size() > 1)
            expected += "...";
        expected += c;
    }
    expected += ",,,000000000)";
    EXPECT_EQ(expected, longest);
    char buf[128];
    int const need = static_cast<int>(expected.size()) + 1;
    EXPECT_TRUE(FormatNumber(-987654321987654272.0, "#9|1|1|,,,|...|0", buf, need));
    EXPECT_EQ(expected, buf);
    std::memset(buf, 'x', sizeof buf);
    EXPECT_FALSE(FormatNumber(-987654321987654272.0, "#9|1|1|,,,|...|0", buf, need - 1));
    EXPECT_STREQ("", buf);
    EXPECT_EQ("1,23,45,67,89,01,23,456.00", Fmt(1234567890123456.0, "#2|1|32|.|,|1"))
        << "a repeating last group";
    EXPECT_EQ("1234,567,89", Fmt(123456789, "#0|1|230|.|,|1")) << "sizes 2, 3, then no more groups";
    EXPECT_EQ("<failed>", Fmt(1.0, "#2|1|3|.|,|1|1")) << "a seventh field";
    EXPECT_EQ("<failed>", Fmt(1.0, "#2|1|3|dddd|,|1")) << "a separator of four characters";
    EXPECT_EQ("<failed>", Fmt(1.0, "#2|1|3|.|.|1")) << "the same separator twice";
    EXPECT_EQ("<failed>", Fmt(1.0, "#2|1|3|5|,|1")) << "a digit as separator";
    EXPECT_EQ("<failed>", Fmt(1.0, "#2|1|3||,|1")) << "no decimal separator";
}

} // namespace
