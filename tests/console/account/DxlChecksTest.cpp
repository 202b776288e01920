// Each file is well-formed, and is the note that its name says.
#include <gtest/gtest.h>

#include "console/folder/DxlReader.h"
#include "tests/console/account/HandMadeExport.h"
#include "tests/support/FileBytes.h"

namespace larkspan::console {
namespace {

class DxlChecksTest : public ::testing::Test {
 protected:
  DxlChecksTest() { export_.Write(); }

  Lines ToldOf(const std::string& name, const std::string& bytes) {
    export_.WriteFile(name, bytes);
    return Told(export_.Verify());
  }

  HandMadeExport export_;
};

TEST_F(DxlChecksTest, EveryTruncationOfANoteIsNoticed) {
  const std::string whole = NoteDxl(0x902);
  const std::size_t endOfRoot = whole.rfind('>') + 1;
  for (std::size_t size = 0; size < endOfRoot; ++size) {
    const Lines told = ToldOf("data/00000902.dxl", whole.substr(0, size));
    ASSERT_EQ(told, Lines{"not-well-formed data/00000902.dxl"}) << size;
  }
}

TEST_F(DxlChecksTest, TheLineAndTheParsersWordsAreTold) {
  export_.Replace("data/00000902.dxl", "</richtext>", "</richtxt>");
  const Account account = export_.Verify();
  ASSERT_EQ(account.findings.size(), 1u);
  EXPECT_EQ(account.findings[0].text,
            "data/00000902.dxl is not well-formed: mismatched tag in line 6");
  EXPECT_EQ(account.findings[0].id, 0x902u);
}

TEST_F(DxlChecksTest, EachKindOfFileIsRead) {
  for (const char* name : {"design/00000102.dxl", "design2/00000102.dxl", "profile/0000090E.dxl",
                           "views/00000106.xml", "acl.dxl", "db.dxl"}) {
    const std::string whole = export_.ReadFile(name);
    EXPECT_EQ(ToldOf(name, whole + "<"), Lines{std::string("not-well-formed ") + name});
    export_.WriteFile(name, whole);
  }
}

TEST_F(DxlChecksTest, AnotherNotesFileIsTheWrongNote) {
  // Both the note ID and the universal ID are another's.
  EXPECT_EQ(ToldOf("data/00000902.dxl", NoteDxl(0x906)),
            (Lines{"wrong-note data/00000902.dxl", "wrong-note data/00000902.dxl"}));
}

TEST_F(DxlChecksTest, TheUniversalIdIsTheSameInAnyCase) {
  export_.Replace("data/0000090A.dxl", "C12583D0004D1A2C", "c12583d0004d1a2c");
  EXPECT_EQ(Told(export_.Verify()), Lines());
}

TEST_F(DxlChecksTest, ANoteIdMayHaveZerosAndCapitals) {
  export_.Replace("data/0000090A.dxl", "noteid='90a'", "noteid='0000090A'");
  EXPECT_EQ(Told(export_.Verify()), Lines());
}

TEST_F(DxlChecksTest, ANoteIdThatIsNoNumberIsTheWrongNote) {
  for (const char* bad : {"noteid=''", "noteid='90ag'", "noteid='100000090a'", "xnoteid='90a'"}) {
    export_.WriteFile("data/0000090A.dxl", NoteDxl(0x90A));
    export_.Replace("data/0000090A.dxl", "noteid='90a'", bad);
    EXPECT_EQ(Told(export_.Verify()), Lines{"wrong-note data/0000090A.dxl"}) << bad;
  }
}

TEST_F(DxlChecksTest, ANoteWithoutAUniversalIdIsTheWrongNote) {
  export_.Replace("data/0000090A.dxl", " unid=", " unit=");
  EXPECT_EQ(Told(export_.Verify()), Lines{"wrong-note data/0000090A.dxl"});
}

TEST_F(DxlChecksTest, ARawCopyIsHeldToItsNoteToo) {
  EXPECT_EQ(ToldOf("design2/00000102.dxl", NoteDxl(0x106)),
            (Lines{"wrong-note design2/00000102.dxl", "wrong-note design2/00000102.dxl"}));
}

TEST_F(DxlChecksTest, ANoteSaysOnceWhichItIs) {
  EXPECT_EQ(ToldOf("data/00000902.dxl", "<document/>"), Lines{"no-noteinfo data/00000902.dxl"});
  export_.WriteFile("data/00000902.dxl", NoteDxl(0x902));
  export_.Replace("data/00000902.dxl", "</noteinfo>", "</noteinfo><noteinfo noteid='902'/>");
  EXPECT_EQ(Told(export_.Verify()), Lines{"wrong-note data/00000902.dxl"});
}

TEST_F(DxlChecksTest, OnlyAChildOfTheRootSaysIt) {
  EXPECT_EQ(ToldOf("data/00000902.dxl", "<document><x><noteinfo noteid='902'/></x></document>"),
            Lines{"no-noteinfo data/00000902.dxl"});
  EXPECT_EQ(ToldOf("data/00000902.dxl", "<noteinfo noteid='902'/>"),
            Lines{"no-noteinfo data/00000902.dxl"});
}

TEST_F(DxlChecksTest, WhatIsNoNoteSaysNothingOfTheKind) {
  for (const char* name : {"acl.dxl", "db.dxl", "views/00000106.xml"}) {
    const std::string whole = export_.ReadFile(name);
    EXPECT_EQ(ToldOf(name, NoteDxl(0x106)), Lines{std::string("wrong-note ") + name});
    export_.WriteFile(name, whole);
  }
}

class DxlReaderTest : public ::testing::Test {
 protected:
  DxlFacts Read(const std::string& bytes) {
    const std::wstring path = folder_ / L"\\file.dxl";
    WriteBytes(path, bytes);
    return reader_.Read(path);
  }

  bool LacksPictures(const std::string& inside) {
    const DxlFacts facts =
        Read("<d a='&lt;Picture removed by Brevink Export&gt;'>" + inside + "</d>");
    EXPECT_EQ(facts.fault, "");
    return facts.lacksPictures;
  }

  TempFolder folder_;
  DxlReader reader_;
};

TEST_F(DxlReaderTest, FindsThePictureTextInCharactersAlone) {
  EXPECT_FALSE(LacksPictures(""));
  EXPECT_FALSE(LacksPictures("<!-- <Picture removed by Brevink Export> -->"));
  EXPECT_FALSE(LacksPictures("Picture removed by Brevink Export"));
  EXPECT_FALSE(LacksPictures("&lt;Picture <b/>removed by Brevink Export&gt;"));
  EXPECT_FALSE(LacksPictures("<b>&lt;Picture</b><b> removed by Brevink Export&gt;</b>"));
  EXPECT_TRUE(LacksPictures("<b>&lt;Picture removed by Brevink Export&gt;</b>"));
  EXPECT_TRUE(LacksPictures("a &lt;&lt;Pic&lt;Picture removed by Brevink Export&gt;&gt; b"));
  EXPECT_TRUE(LacksPictures("<![CDATA[<Picture removed by Brevink Export>]]>"));
}

TEST_F(DxlReaderTest, FindsThePictureTextAcrossPieces) {
  for (std::size_t before = 65530 - 60; before < 65530; ++before)
    ASSERT_TRUE(
        LacksPictures(std::string(before, 'x') + "&lt;Picture removed by Brevink Export&gt;"))
        << before;
}

TEST_F(DxlReaderTest, AParserServesOneFileAfterAnother) {
  EXPECT_NE(Read("<d").fault, "");
  EXPECT_TRUE(LacksPictures("&lt;Picture removed by Brevink Export&gt;"));
  EXPECT_EQ(Read(NoteDxl(0x902)).noteId, 0x902u);
  const DxlFacts facts = Read("<d/>");
  EXPECT_FALSE(facts.lacksPictures);
  EXPECT_EQ(facts.noteInfos, 0u);
  EXPECT_FALSE(facts.noteId);
}

TEST_F(DxlReaderTest, AFileOfWholePiecesIsReadToItsEnd) {
  for (const std::size_t size : {65535u, 65536u, 65537u, 131072u}) {
    const std::string whole = "<d>" + std::string(size - 7, 'x') + "</d>";
    EXPECT_EQ(Read(whole).fault, "") << size;
    EXPECT_NE(Read(whole + "<").fault, "") << size;
    EXPECT_NE(Read(whole.substr(0, size - 1)).fault, "") << size;
  }
}

TEST_F(DxlReaderTest, OpensNoOtherFile) {
  WriteBytes(folder_ / L"\\other.xml", "<noteinfo noteid='1'/>");
  const DxlFacts facts = Read("<!DOCTYPE d [<!ENTITY e SYSTEM 'other.xml'>]><d>&e;</d>");
  EXPECT_EQ(facts.fault, "");
  EXPECT_EQ(facts.noteInfos, 0u);
}

TEST_F(DxlReaderTest, EndsAnExpansionThatHasNoEnd) {
  std::string bomb = "<!DOCTYPE d [<!ENTITY a0 'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx'>";
  for (int i = 1; i < 12; ++i) {
    const std::string before = "&a" + std::to_string(i - 1) + ";";
    std::string entity = "<!ENTITY a" + std::to_string(i) + " '";
    for (int j = 0; j < 10; ++j) entity += before;
    bomb += entity + "'>";
  }
  EXPECT_NE(Read(bomb + "]><d>&a11;</d>").fault, "");
}

TEST_F(DxlReaderTest, AMissingFileIsUnreadable) {
  const DxlFacts facts = reader_.Read(folder_ / L"\\none.dxl");
  EXPECT_TRUE(facts.isUnreadable);
  EXPECT_EQ(facts.fault, "cannot be read");
}

}  // namespace
}  // namespace larkspan::console
