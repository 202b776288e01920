// The account in words.
#include "console/account/AccountText.h"

#include <gtest/gtest.h>

namespace larkspan::console {
namespace {

Account AccountOfNotes(std::uint64_t listed) {
  Account account;
  account.notes.listed = account.notes.exported = listed;
  return account;
}

TEST(VerdictTextTest, SaysWhatCameOut) {
  Account account = AccountOfNotes(1);
  EXPECT_EQ(VerdictText(account), "Whole: all 1 note is exported.");
  account = AccountOfNotes(1058);
  EXPECT_EQ(VerdictText(account), "Whole: all 1,058 notes are exported.");
  account.losses.resize(2);
  EXPECT_EQ(VerdictText(account), "All of 1,058 notes exported, with 2 losses; each is listed.");
  account.notes.lost = 2;
  account.notes.notReached = 1;
  EXPECT_EQ(VerdictText(account), "3 of 1,058 notes are lost; each loss is listed.");
  account.findings.resize(1);
  EXPECT_EQ(VerdictText(account), "Not accounted for: 1 thing is not as it must be.");
  account.findings.resize(2);
  EXPECT_EQ(VerdictText(account), "Not accounted for: 2 things are not as they must be.");
}

TEST(AccountTextTest, HasALineForEachThing) {
  Account account = AccountOfNotes(3);
  account.folders = {{"", 5, 4729}, {"data", 1234, 5678901}};
  account.losses = {{LossKind::kNote, 0x902, "open", "Note has been deleted"},
                    {LossKind::kAcl, std::nullopt, "acl", "Notes error 585"}};
  account.findings = {{"unaccounted", 0x906, "", "note 00000906 has neither"}};
  account.warnings = {{"log", "something"}};
  EXPECT_EQ(AccountText(account),
            "Not accounted for: 1 thing is not as it must be.\n"
            "\n"
            "  (top)            5 files             4,729 bytes\n"
            "  data         1,234 files         5,678,901 bytes\n"
            "\n"
            "Lost (2):\n"
            "  00000902  note        open      Note has been deleted\n"
            "            ACL         acl       Notes error 585\n"
            "\n"
            "Not as it must be (1):\n"
            "  unaccounted      note 00000906 has neither\n"
            "\n"
            "Warnings (1):\n"
            "  log           something\n");
}

TEST(AccountTextTest, OfVeryManyOfAKindTheFirstAreShown) {
  Account account = AccountOfNotes(2000);
  for (std::uint32_t id = 1; id <= 1254; ++id)
    account.losses.push_back({LossKind::kNote, id, "open", "gone"});
  account.losses.push_back({LossKind::kPictures, 7, "pictures", "damaged"});
  const std::string text = AccountText(account);
  EXPECT_NE(text.find("Lost (1,255):"), std::string::npos);
  EXPECT_NE(text.find("  00000014  note"), std::string::npos);
  EXPECT_EQ(text.find("  00000015  note"), std::string::npos);
  EXPECT_NE(text.find("  and 1,234 more (--json lists all)\n  00000007  pictures"),
            std::string::npos);
}

TEST(AccountTextTest, ATerminalIsGivenNoControlCharacters) {
  Account account;
  account.losses = {{LossKind::kNote, 0x902, "open",
                     "a\x1B[31m\r\nb\x7F\xC2\x9B"
                     "c\xC3\xA4"}};
  EXPECT_NE(AccountText(account).find("open      a?[31m??b??c\xC3\xA4\n"), std::string::npos);
}

}  // namespace
}  // namespace larkspan::console
