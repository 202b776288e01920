// Identities and sealed notes.
#include "standin/StandinHooks.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr STATUS kIdFileMissing = 6400;
constexpr STATUS kIdFileDamaged = 6403;
constexpr STATUS kWrongPassword = 6408;
constexpr STATUS kNotAReader = 6411;

constexpr char kSealed[] = R"({"notes": [{"id": "90A", "sealedFor": ["CN=Imke"], "items": [
  {"name": "Subject", "text": "in clear"},
  {"name": "Body", "sealed": true, "richText": ["secret"]},
  {"name": "Place", "sealed": true, "text": "hidden"}]}]})";

class Identities : public StandinTest {
 protected:
  Identities() {
    WriteFile("imke.id", R"({"name": "CN=Imke", "password": "pässword"})");
    WriteFile("noé.id", R"({"name": "CN=Noé", "password": "x"})");
    WriteFile("broken.id", R"({"name": "CN=Nobody"})");
    Start();
  }

  static STATUS Switch(const std::string& file, const std::string& password) {
    char name[256] = {};
    return SECKFMSwitchToIDFile(ToNotes(std::string_view(file)).c_str(),
                                ToNotes(std::string_view(password)).c_str(), name, sizeof name, 8,
                                nullptr);
  }

  static STATUS Decrypt(DHANDLE note, const std::string& file, const std::string& password) {
    HKFC keyFile = nullptr;
    const STATUS opened = SECKFMOpen(&keyFile, ToNotes(std::string_view(file)).c_str(),
                                     ToNotes(std::string_view(password)).c_str(), 1, 0, nullptr);
    if (opened != 0) return opened;
    const STATUS decrypted = NSFNoteCipherDecrypt(note, keyFile, 1, nullptr, 0, nullptr);
    EXPECT_EQ(SECKFMClose(&keyFile, 0, nullptr), 0);
    return decrypted;
  }

  static std::string UserName() {
    char name[256] = {};
    EXPECT_EQ(SECKFMGetUserName(name), 0);
    return ToUtf8(name);
  }
};

}  // namespace

TEST_F(Identities, SwitchToAnIdFile) {
  EXPECT_EQ(Switch("noé.id", "x"), 0);
  EXPECT_EQ(UserName(), "CN=Noé");
  EXPECT_EQ(Switch("imke.id", "pässword"), 0);
  EXPECT_EQ(UserName(), "CN=Imke");
}

TEST_F(Identities, StayWhenASwitchFails) {
  const std::string before = UserName();
  EXPECT_EQ(Switch("imke.id", "password"), kWrongPassword);
  EXPECT_EQ(Switch("imke.id", ""), kWrongPassword);
  EXPECT_EQ(Switch("none.id", "x"), kIdFileMissing);
  EXPECT_EQ(Switch("broken.id", "x"), kIdFileDamaged);
  EXPECT_EQ(UserName(), before);
}

TEST_F(Identities, DecryptWhatIsSealedForThem) {
  OpenDatabase(kSealed);
  const DHANDLE note = OpenNote(kDocument);
  EXPECT_EQ(Decrypt(note, "imke.id", "pässword"), 0);
  char text[32];
  EXPECT_EQ(NSFItemGetText(note, "Place", text, sizeof text), 6);
  EXPECT_NE(Export(note).dxl.find("secret"), std::string::npos);
}

TEST_F(Identities, DoNotDecryptWhatIsSealedForOthers) {
  OpenDatabase(kSealed);
  const DHANDLE note = OpenNote(kDocument);
  EXPECT_EQ(Decrypt(note, "noé.id", "x"), kNotAReader);
  EXPECT_EQ(Decrypt(note, "imke.id", "wrong"), kWrongPassword);
  char text[32];
  EXPECT_EQ(NSFItemGetText(note, "Place", text, sizeof text), 0);
  EXPECT_EQ(NSFItemGetText(note, "Subject", text, sizeof text), 8);
}

TEST_F(Identities, SealedItemsShowAsEncryptedUntilDecrypted) {
  OpenDatabase(kSealed);
  const DHANDLE note = OpenNote(kDocument);
  const std::string before = Export(note).dxl;
  EXPECT_NE(before.find("<item name='Body' sealed='true' encrypted='true'>"), std::string::npos);
  EXPECT_EQ(before.find("secret"), std::string::npos);
  EXPECT_NE(before.find("in clear"), std::string::npos);
  ASSERT_EQ(Decrypt(note, "imke.id", "pässword"), 0);
  EXPECT_EQ(Export(note).dxl.find("encrypted='true'"), std::string::npos);
}

TEST_F(Identities, DecryptionReachesValuesThatWereLookedAtBefore) {
  OpenDatabase(kSealed);
  const DHANDLE note = OpenNote(kDocument);
  BlockId value = {};
  DWORD length = 0;
  ASSERT_EQ(NSFItemInfo(note, "Place", 5, nullptr, nullptr, &value, &length), 0);
  const auto* bytes = static_cast<const char*>(OSLockObject(value.pool)) + value.block;
  EXPECT_NE(std::string(bytes + 2, length - 2), "hidden");
  OSUnlockObject(value.pool);
  ASSERT_EQ(Decrypt(note, "imke.id", "pässword"), 0);
  ASSERT_EQ(NSFItemInfo(note, "Place", 5, nullptr, nullptr, &value, &length), 0);
  bytes = static_cast<const char*>(OSLockObject(value.pool)) + value.block;
  EXPECT_EQ(std::string(bytes + 2, length - 2), "hidden");
  OSUnlockObject(value.pool);
}

TEST_F(Identities, CountOpenIdFiles) {
  HKFC keyFile = nullptr;
  ASSERT_EQ(
      SECKFMOpen(&keyFile, "imke.id", ToNotes(std::string_view("pässword")).c_str(), 1, 0, nullptr),
      0);
  EXPECT_EQ(StandinOpenCount(), 1U);
  EXPECT_EQ(SECKFMClose(&keyFile, 0, nullptr), 0);
  EXPECT_EQ(keyFile, nullptr);
  EXPECT_EQ(StandinOpenCount(), 0U);
}

TEST_F(Identities, OfAFullAccessOpenIsTheOneSwitchedTo) {
  WriteFile("a.nsf", R"({"access": "fullAccessOnly"})");
  ASSERT_EQ(Switch("imke.id", "pässword"), 0);
  DHANDLE database = 0;
  EXPECT_EQ(NSFDbOpenExtended("a.nsf", 0, MakeNamesList("CN=Imke", 7), nullptr, &database, nullptr,
                              nullptr),
            0);
}

}  // namespace larkspan::standin_test
