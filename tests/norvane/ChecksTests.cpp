#include "NVChecks.h"

#include <gtest/gtest.h>

#include <string>

namespace {

int Card(int iType, char const* lpszNumber) {
    std::string copy = lpszNumber;
    int const result = CreditCardValidate(iType, &copy[0]);
    EXPECT_EQ(lpszNumber, copy) << "the number stays as it was";
    return result;
}

TEST(Checks, EmailAddresses) {
    for (char const* good :
         {"a@b.de", "first.last@example.com", "x+tag@sub.domain.example.org", "o'neil_1-2@my-host.co.uk",
          "!#$%&'*+/=?^_`{|}~-@example.com", "A@EXAMPLE.COM"}) {
        EXPECT_TRUE(NVIsValidEmailAddress(good)) << good;
    }
    std::string const longLocal = std::string(65, 'a') + "@example.com";
    std::string const longLabel = "a@" + std::string(64, 'b') + ".com";
    std::string longAddress = "a@";
    for (int i = 0; i < 50; ++i)
        longAddress += "abcd.";
    longAddress += "com";
    for (std::string bad : {std::string(""),
                            std::string("plain"),
                            std::string("@example.com"),
                            std::string("a@"),
                            std::string("a@b"),
                            std::string("a@b.c"),
                            std::string("a@@b.de"),
                            std::string("a@b@c.de"),
                            std::string(".a@b.de"),
                            std::string("a.@b.de"),
                            std::string("a..b@c.de"),
                            std::string("a b@c.de"),
                            std::string(" a@b.de"),
                            std::string("a@b.de "),
                            std::string("a@-b.de"),
                            std::string("a@b-.de"),
                            std::string("a@b..de"),
                            std::string("a@.b.de"),
                            std::string("a@b.de."),
                            std::string("a@b.d3"),
                            std::string("a@b_c.de"),
                            std::string("a(b)@c.de"),
                            std::string("M\xFCller@b.de"),
                            longLocal,
                            longLabel,
                            longAddress}) {
        EXPECT_FALSE(NVIsValidEmailAddress(bad.c_str())) << bad;
    }
    EXPECT_FALSE(NVIsValidEmailAddress(nullptr));
}

TEST(Checks, CardNumbersByType) {
    struct Case {
        int iType;
        char const* lpszNumber;
    };
    for (Case c : {Case{NVCC_VISA, "4111111111111111"}, Case{NVCC_VISA, "4222222222222"},
                   Case{NVCC_VISA, "4012 8888 8888 1881"}, Case{NVCC_MASTERCARD, "5555-5555-5555-4444"},
                   Case{NVCC_MASTERCARD, "2221000000000009"}, Case{NVCC_AMEX, "378282246310005"},
                   Case{NVCC_AMEX, "371449635398431"}, Case{NVCC_DINERS, "30569309025904"},
                   Case{NVCC_DINERS, "38520000023237"}, Case{NVCC_DISCOVER, "6011111111111117"},
                   Case{NVCC_JCB, "3530111333300000"}, Case{NVCC_MAESTRO, "6304000000000000"}}) {
        EXPECT_EQ(NVCC_OK, Card(c.iType, c.lpszNumber)) << c.iType << " " << c.lpszNumber;
        EXPECT_EQ(NVCC_OK, Card(NVCC_ANY, c.lpszNumber)) << c.lpszNumber;
    }

    EXPECT_EQ(NVCC_ERR_CHECKSUM, Card(NVCC_VISA, "4111111111111112"));
    EXPECT_EQ(NVCC_ERR_CHECKSUM, Card(NVCC_ANY, "5555555555554445"));
    EXPECT_EQ(NVCC_ERR_PREFIX, Card(NVCC_VISA, "5555555555554444")) << "a MasterCard is no Visa";
    EXPECT_EQ(NVCC_ERR_PREFIX, Card(NVCC_AMEX, "4111111111111111"));
    EXPECT_EQ(NVCC_ERR_PREFIX, Card(NVCC_ANY, "1234567812345670"));
    EXPECT_EQ(NVCC_OK, Card(NVCC_MASTERCARD, "2720999999999996")) << "2720 is still MasterCard";
    EXPECT_EQ(NVCC_ERR_PREFIX, Card(NVCC_MASTERCARD, "2721000000000000"));
    EXPECT_EQ(NVCC_ERR_LENGTH, Card(NVCC_VISA, "41111111111111")) << "14 digits";
    EXPECT_EQ(NVCC_ERR_LENGTH, Card(NVCC_AMEX, "3782822463100050"));
    EXPECT_EQ(NVCC_ERR_LENGTH, Card(NVCC_ANY, "411111111111111111111"));
    EXPECT_EQ(NVCC_ERR_CHARACTER, Card(NVCC_VISA, "4111 1111 1111 111x"));
    EXPECT_EQ(NVCC_ERR_CHARACTER, Card(NVCC_VISA, "4111.1111.1111.1111"));
    EXPECT_EQ(NVCC_ERR_EMPTY, Card(NVCC_VISA, ""));
    EXPECT_EQ(NVCC_ERR_EMPTY, Card(NVCC_VISA, " - "));
    EXPECT_EQ(NVCC_ERR_EMPTY, CreditCardValidate(NVCC_VISA, nullptr));
    EXPECT_EQ(NVCC_ERR_TYPE, Card(99, "4111111111111111"));
    EXPECT_EQ(NVCC_ERR_TYPE, Card(-1, "4111111111111111"));
}

} // namespace
