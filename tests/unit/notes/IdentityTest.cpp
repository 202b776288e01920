#include "notes/Identity.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <windows.h>

#include <string>
#include <string_view>

#include "tests/support/NotesFixture.h"
#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

constexpr char kIdentityDatabase[] = R"({"notes": [
  {"id": "00000902", "sealedFor": ["CN=Imke/O=Garten"],
   "items": [{"name": "Secret", "text": "4711", "sealed": true}]}
]})";

class IdentityTest : public NotesFixture {
 protected:
  IdentityTest() {
    WriteDatabase(kIdentityDatabase);
    WriteData(L"imke.id", R"({"name": "CN=Imke/O=Garten", "password": "Rittersporn"})");
    WriteData(L"b\u00E9.id", "{\"name\": \"CN=Bo/O=Garten\", \"password\": \"p\u00E2que\"}");
    Start();
  }

  static std::string CurrentUserName() {
    std::string name;
    EXPECT_TRUE(GetCurrentUserName(name).ok());
    return name;
  }

  static Status DecryptTestNote(const std::wstring& idFile, const std::wstring& password) {
    const Database database = OpenTestDatabase();
    const Note note = OpenTestNote(database, 0x902);
    return DecryptNote(note, idFile, password);
  }
};

TEST_F(IdentityTest, SwitchWithoutIdFileDoesNothing) {
  EXPECT_TRUE(SwitchId(L"", L"Rittersporn").ok());
  EXPECT_EQ(Calls("SECKFMSwitchToIDFile"), 0);
}

TEST_F(IdentityTest, SwitchWithoutPasswordDoesNothing) {
  EXPECT_TRUE(SwitchId(L"imke.id", L"").ok());
  EXPECT_EQ(Calls("SECKFMSwitchToIDFile"), 0);
}

TEST_F(IdentityTest, SwitchMakesAnotherUserCurrent) {
  EXPECT_TRUE(SwitchId(L"imke.id", L"Rittersporn").ok());
  EXPECT_EQ(CurrentUserName(), "CN=Imke/O=Garten");
}

TEST_F(IdentityTest, SwitchHasFlags8AndAPlaceOf256BytesForTheName) {
  EXPECT_TRUE(SwitchId(L"imke.id", L"Rittersporn").ok());
  EXPECT_EQ(Arguments("SECKFMSwitchToIDFile"), R"({"flags":8,"idFile":"imke.id","size":256})");
}

TEST_F(IdentityTest, SwitchTranslatesIdFileAndPassword) {
  EXPECT_TRUE(SwitchId(L"b\u00E9.id", L"p\u00E2que").ok());
  EXPECT_EQ(CurrentUserName(), "CN=Bo/O=Garten");
}

TEST_F(IdentityTest, SwitchWithWrongPasswordFails) {
  EXPECT_EQ(SwitchId(L"imke.id", L"rittersporn").code(), 6408);
}

TEST_F(IdentityTest, SwitchThatFailedLeavesTheUser) {
  EXPECT_FALSE(SwitchId(L"imke.id", L"rittersporn").ok());
  EXPECT_EQ(CurrentUserName(), "CN=Larkspan Tester/O=Example");
}

TEST_F(IdentityTest, SwitchToMissingFileFails) {
  EXPECT_EQ(SwitchId(L"missing.id", L"Rittersporn").code(), 6400);
}

TEST_F(IdentityTest, SwitchIsNotLogged) {
  EXPECT_FALSE(SwitchId(L"missing.id", L"Rittersporn").ok());
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(IdentityTest, UserNameIsInTheNotesCharacterSet) {
  WriteData(L"noe.id", "{\"name\": \"CN=No\u00E9\", \"password\": \"a\"}");
  EXPECT_TRUE(SwitchId(L"noe.id", L"a").ok());
  EXPECT_EQ(CurrentUserName(), "CN=No\x01\xE9");
}

TEST_F(IdentityTest, UserNameOf255BytesIsWhole) {
  WriteData(L"long.id", R"({"password": "a", "name": ")" + std::string(255, 'n') + "\"}");
  EXPECT_TRUE(SwitchId(L"long.id", L"a").ok());
  EXPECT_EQ(CurrentUserName(), std::string(255, 'n'));
}

TEST_F(IdentityTest, StatusOfTheUserNameIsReturned) {
  SetFaults(R"([{"entry": "SECKFMGetUserName", "status": 273}])");
  std::string name = "before";
  EXPECT_EQ(GetCurrentUserName(name).code(), 273);
  EXPECT_EQ(name, "");
}

TEST_F(IdentityTest, NoteIsDecryptedWithTheIdFile) {
  EXPECT_TRUE(DecryptTestNote(L"imke.id", L"Rittersporn").ok());
}

TEST_F(IdentityTest, DecryptionUsesOption1ForFileAndNote) {
  EXPECT_TRUE(DecryptTestNote(L"imke.id", L"Rittersporn").ok());
  EXPECT_EQ(Arguments("SECKFMOpen"), R"({"idFile":"imke.id","options":1})");
  EXPECT_EQ(Arguments("NSFNoteCipherDecrypt"), R"({"options":1})");
}

TEST_F(IdentityTest, IdFileIsClosedAfterTheDecryption) {
  EXPECT_TRUE(DecryptTestNote(L"imke.id", L"Rittersporn").ok());
  EXPECT_EQ(Order({"SECKFMOpen", "NSFNoteCipherDecrypt", "SECKFMClose"}),
            (Lines{"SECKFMOpen", "NSFNoteCipherDecrypt", "SECKFMClose"}));
}

TEST_F(IdentityTest, IdFileThatDoesNotOpenDecryptsNothing) {
  EXPECT_EQ(DecryptTestNote(L"imke.id", L"wrong").code(), 6408);
  EXPECT_EQ(Calls("NSFNoteCipherDecrypt"), 0);
  EXPECT_EQ(Calls("SECKFMClose"), 0);
}

TEST_F(IdentityTest, IdFileIsClosedAfterADecryptionThatFailed) {
  EXPECT_EQ(DecryptTestNote(L"b\u00E9.id", L"p\u00E2que").code(), 6411);
  EXPECT_EQ(Calls("SECKFMClose"), 1);
}

const std::wstring kTooLong(1024, L'x');

TEST_F(IdentityTest, SwitchWithTextsThatDoNotFitIsRefused) {
  EXPECT_EQ(SwitchId(kTooLong, L"Rittersporn").code(), 274);
  EXPECT_EQ(SwitchId(L"imke.id", kTooLong).code(), 274);
  EXPECT_EQ(Calls("SECKFMSwitchToIDFile"), 0);
}

TEST_F(IdentityTest, SwitchWithAnIdFileThatIsTranslatedToNothingIsRefused) {
  SetFaults(R"([{"entry": "OSTranslate", "call": 1, "status": 1}])");
  EXPECT_EQ(SwitchId(L"imke.id", L"Rittersporn").code(), 274);
  EXPECT_EQ(Calls("SECKFMSwitchToIDFile"), 0);
}

TEST_F(IdentityTest, DecryptionWithTextsThatDoNotFitIsRefused) {
  EXPECT_EQ(DecryptTestNote(kTooLong, L"Rittersporn").code(), 274);
  EXPECT_EQ(DecryptTestNote(L"imke.id", kTooLong).code(), 274);
  EXPECT_EQ(Calls("SECKFMOpen"), 0);
}

// What this program frees is looked at just before.
constexpr std::string_view kSecret = "Rittersporn";
int freedSecrets = 0;

void FreeAndLook(void* block) {
  if (block != nullptr) {
    const std::string_view bytes(static_cast<const char*>(block), _msize(block));
    if (bytes.find(kSecret) != bytes.npos) ++freedSecrets;
  }
  const auto original = reinterpret_cast<void (*)(void*)>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"msvcrt.dll"), "free")));
  original(block);
}

class FreedPasswordTest : public IdentityTest {
 protected:
  FreedPasswordTest() { freedSecrets = 0; }
  ~FreedPasswordTest() override { EXPECT_EQ(freedSecrets, 0); }

 private:
  const ReplacedEntryPoint free_{"msvcrt.dll", "free", FreeAndLook};
};

TEST_F(FreedPasswordTest, SwitchLeavesNone) {
  EXPECT_TRUE(SwitchId(L"imke.id", L"Rittersporn").ok());
}

TEST_F(FreedPasswordTest, DecryptionLeavesNone) {
  EXPECT_TRUE(DecryptTestNote(L"imke.id", L"Rittersporn").ok());
}

// One that could be cut is translated twice.
TEST_F(FreedPasswordTest, LongPasswordsLeaveNone) {
  const std::wstring name = L"Rittersporn";
  EXPECT_FALSE(SwitchId(L"imke.id", name + std::wstring(1023 - name.size(), L'x')).ok());
  EXPECT_FALSE(SwitchId(L"imke.id", name + kTooLong).ok());
}

TEST_F(FreedPasswordTest, IsSeenWhereItIsLeft) {
  { const std::string left(std::string(100, 'x') + std::string(kSecret)); }
  EXPECT_GE(freedSecrets, 1);
  freedSecrets = 0;
}

}  // namespace
}  // namespace larkspan
