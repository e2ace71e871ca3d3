#include "host/Text.h"

#include <gtest/gtest.h>

using namespace qx;

TEST(Text, CaseFoldsLatinLettersAndLeavesIndianScriptsAlone) {
    EXPECT_EQ(UpperCase("Wheat dara ਕਣਕ"), "WHEAT DARA ਕਣਕ");
    EXPECT_EQ(LowerCase("CKivraDoc"), "ckivradoc");
    EXPECT_TRUE(EqualsNoCase("Purchase", "purchase"));
    EXPECT_FALSE(EqualsNoCase("Purchase", "Purchases"));
    EXPECT_TRUE(ContainsNoCase("x*kivramenu*y", "*KivraMenu*"));
    EXPECT_FALSE(ContainsNoCase("*Kivra Menu*", "*KivraMenu*"));
    EXPECT_EQ(CharacterCount("ਖੰਨਾਂ"), 5u);
    EXPECT_EQ(CharacterCount("KHANA"), 5u);
    EXPECT_EQ(Trim("  WHEAT \t"), "WHEAT");
    EXPECT_EQ(Trim("   "), "");
}

TEST(Text, PrintFormOfHeadNames) {
    EXPECT_EQ(PrintForm("MARKET FEE : WHEAT"), "Market Fee : Wheat");
    EXPECT_EQ(PrintForm("TRADING A/C: BASMATI 1121"), "Trading A/c: Basmati 1121");
    EXPECT_EQ(PrintForm("R.D.F. PAYABLE"), "R.D.F. Payable");
    EXPECT_EQ(PrintForm("D'SOUZA MILLS"), "D'souza Mills");
    EXPECT_EQ(PrintForm("ਕਣਕ MAL KHATA"), "ਕਣਕ Mal Khata");
}
