// The DXL that exporters write.
#include "tests/standin/XmlChecker.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr char kRun[] = "<run>&lt;Removed&gt;</run>";

void LARKSPAN_NOTES_CALL Append(const BYTE* buffer, DWORD length, void* context) {
  static_cast<std::string*>(context)->append(reinterpret_cast<const char*>(buffer), length);
}

class Dxl : public StandinTest {
 protected:
  std::string ExportWith(const std::string& items, const std::vector<Property>& properties = {}) {
    OpenDatabase(DocumentWith(items));
    return Export(OpenNote(kDocument), properties).dxl;
  }
};

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace

TEST_F(Dxl, OfANoteIsWellFormedWhateverItsTextHolds) {
  const std::string dxl = ExportWith(R"(
    {"name": "A<&'\">", "text": "<&>'\"]]> -- \u0001\u000b\r\n\t ä 銀 🌼 \uffff\ufffe"},
    {"name": "L", "textList": ["<", "&"]}, {"name": "N", "numbers": [1e300, -0.5]},
    {"name": "D", "dateTimes": ["2000-01-01", "T10:00:00Z"]}, {"name": "F", "formula": "a < b"},
    {"name": "P", "type": 20, "bytes": "000102FF"},
    {"name": "B", "richText": ["a < b", {"picture": "p"}, {"record": -97, "bytes": "01"}]})");
  EXPECT_EQ(XmlFault(dxl), "") << dxl;
  EXPECT_EQ(dxl.find("\r"), std::string::npos);
}

TEST_F(Dxl, ShowsValuesByType) {
  const std::string dxl = ExportWith(R"(
    {"name": "T", "text": "a\nb"}, {"name": "L", "textList": ["x", ""]},
    {"name": "N", "number": 5.5}, {"name": "NL", "numbers": [1, 2]},
    {"name": "D", "dateTime": "2022-06-30T10:11:12.05Z"}, {"name": "F", "formula": "x"},
    {"name": "P", "type": 20, "bytes": "666F6F62"})");
  EXPECT_TRUE(Contains(dxl, "<item name='T'><text>a<break/>b</text></item>"));
  EXPECT_TRUE(Contains(dxl, "<textlist><text>x</text><text></text></textlist>"));
  EXPECT_TRUE(Contains(dxl, "<item name='N'><number>5.5</number></item>"));
  EXPECT_TRUE(Contains(dxl, "<numberlist><number>1</number><number>2</number></numberlist>"));
  EXPECT_TRUE(Contains(dxl, "<datetime>20220630T101112,05+00</datetime>"));
  EXPECT_TRUE(Contains(dxl, "<formula>x</formula>"));
  EXPECT_TRUE(Contains(dxl, "<rawdata type='14'>\nZm9vYg==\n</rawdata>"));
}

TEST_F(Dxl, NamesTheNote) {
  OpenDatabase(R"({"replicaId": "0123456789ABCDEF", "notes": [{"id": "90A", "class": "form",
    "sequence": 7, "unid": "00112233445566778899AABBCCDDEEFF"}]})");
  const std::string dxl = Export(OpenNote(0x90A)).dxl;
  EXPECT_TRUE(Contains(dxl, "<!DOCTYPE form>\n"));
  EXPECT_TRUE(Contains(dxl, " replicaid='0123456789ABCDEF'"));
  EXPECT_TRUE(Contains(dxl, std::string("<form xmlns='") + kDxlNamespace + "'"));
  EXPECT_TRUE(Contains(
      dxl, "<noteinfo noteid='90a' unid='00112233445566778899AABBCCDDEEFF' sequence='7'>"));
}

TEST_F(Dxl, OfARawExporterShowsBytes) {
  const std::string dxl = ExportWith(R"({"name": "T", "text": "foob"})", {{30, 1}, {6, 1}});
  EXPECT_TRUE(Contains(dxl, "<!DOCTYPE note>\n"));
  EXPECT_TRUE(Contains(dxl, " class='1'>"));
  EXPECT_TRUE(Contains(dxl, "<item name='T'><rawdata type='500'>\nZm9vYg==\n</rawdata></item>"));
  EXPECT_EQ(XmlFault(dxl), "");
}

TEST_F(Dxl, ShowsTheSettingsOfTheExporter) {
  const std::string dxl = ExportWith("", {{3, 0}, {38, 1}, {39, 1}, {35, 0}});
  EXPECT_TRUE(Contains(
      dxl, "<!-- exporter 1; 3=0 6=unset 14=unset 30=unset 35=0 36=unset 37=unset 38=1 39=1 -->"))
      << dxl;
}

TEST_F(Dxl, PutsTheGivenTextInPlaceOfRemovedPictures) {
  OpenDatabase(DocumentWith(R"({"name": "B", "richText": ["a", {"picture": "p"}, "z"]})"));
  const DHANDLE note = OpenNote(kDocument);
  DHANDLE exporter = 0;
  ASSERT_EQ(DXLCreateExporter(&exporter), 0);
  std::uint32_t on = 1;
  std::string run = kRun;
  ASSERT_EQ(DXLSetExporterProperty(exporter, 39, &on), 0);
  ASSERT_EQ(DXLSetExporterProperty(exporter, 14, run.data()), 0);
  std::string dxl;
  ASSERT_EQ(DXLExportNote(exporter, Append, note, &dxl), 0);
  EXPECT_TRUE(Contains(dxl, "<paragraph>" + run + "</paragraph>"));
  EXPECT_FALSE(Contains(dxl, "<picture>"));
  EXPECT_TRUE(Contains(dxl, " 14='" + run + "' 30="));
  EXPECT_EQ(XmlFault(dxl), "");
}

TEST_F(Dxl, KeepsPicturesOtherwise) {
  const std::string dxl =
      ExportWith(R"({"name": "B", "richText": [{"picture": "foob"}]})", {{39, 0}});
  EXPECT_TRUE(Contains(dxl, "<paragraph><picture>\nZm9vYg==\n</picture></paragraph>"));
}

TEST_F(Dxl, ComesInChunksThatMaySplitCharacters) {
  OpenDatabase(R"({"chunkBytes": 7, "notes": [{"id": "90A", "items": [
    {"name": "T", "text": "äöüäöüäöüäöüäöü"}]}]})");
  const Exported exported = Export(OpenNote(kDocument));
  for (std::size_t i = 0; i + 1 < exported.chunks.size(); ++i) EXPECT_EQ(exported.chunks[i], 7U);
  EXPECT_EQ(exported.chunks.size(), (exported.dxl.size() + 6) / 7);
  EXPECT_EQ(XmlFault(exported.dxl), "");
}

TEST_F(Dxl, LeavesOutDeletedItems) {
  OpenDatabase(DocumentWith(R"({"name": "A", "text": "a"}, {"name": "B", "text": "b"})"));
  const DHANDLE note = OpenNote(kDocument);
  ASSERT_EQ(NSFItemDelete(note, "A", 1), 0);
  const std::string dxl = Export(note).dxl;
  EXPECT_FALSE(Contains(dxl, "<item name='A'>"));
  EXPECT_TRUE(Contains(dxl, "<item name='B'>"));
}

TEST_F(Dxl, OfTheAclShowsEntriesAndRoles) {
  const DHANDLE database = OpenDatabase(R"({"roles": ["[Editor]"], "acl": [
    {"name": "CN=Noé <x>", "level": "manager", "roles": ["[Editor]"]}]})");
  DHANDLE exporter = 0;
  ASSERT_EQ(DXLCreateExporter(&exporter), 0);
  std::string dxl;
  ASSERT_EQ(DXLExportACL(exporter, Append, database, &dxl), 0);
  EXPECT_TRUE(Contains(dxl, "<role>[Editor]</role>\n"));
  EXPECT_TRUE(
      Contains(dxl, "<entry name='CN=Noé &lt;x&gt;' level='manager'><role>[Editor]</role>"));
  EXPECT_EQ(XmlFault(dxl), "");
}

TEST_F(Dxl, ExportersRefuseUnknownProperties) {
  Start();
  DHANDLE exporter = 0;
  ASSERT_EQ(DXLCreateExporter(&exporter), 0);
  std::uint32_t on = 1;
  for (const int property : {3, 6, 30, 35, 36, 37, 38, 39}) {
    EXPECT_EQ(DXLSetExporterProperty(exporter, property, &on), 0);
  }
  for (const int property : {-1, 0, 13, 29, 40}) {
    EXPECT_EQ(DXLSetExporterProperty(exporter, property, &on), 1180);
  }
}

TEST(XmlChecker, FindsWhatIsNotWellFormed) {
  const std::string head = "<?xml version='1.0' encoding='utf-8'?>\n<!DOCTYPE a>\n";
  EXPECT_EQ(XmlFault(head + "<!-- c --><a b='1'><c/>x&amp;</a>\n"), "");
  for (const char* bad : {"", "<b></b>", "<a>", "<a></b>", "<a b='1' b='2'></a>", "<a>&x;</a>",
                          "<a b='<'></a>", "<a></a>x", "<a>\x01</a>", "<a>\xC3</a>", "<a>]]></a>",
                          "<!-- -- --><a></a>", "<a b=1></a>"}) {
    EXPECT_NE(XmlFault(head + bad), "") << bad;
  }
}

}  // namespace larkspan::standin_test
