#include "ORBCefResourceTables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeTools.h"
#include "FreshProcess.h"
#include "TempDirectory.h"
#include "include/cef_stream.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace Tables = ORBCefResourceTables;

CefRefPtr<CefXmlReader> Reader(std::string xml) {
  return CefXmlReader::Create(CefStreamReader::CreateForData(xml.data(), xml.size()),
                              XML_ENCODING_UTF8, "file:///test.xml");
}

Tables::MimeTypeMap MimeTypes(const std::string& xml) {
  Tables::MimeTypeMap types;
  Tables::ReadMimeTypes(Reader(xml), types);
  return types;
}

std::map<std::string, std::string> UriSchemes(const std::string& xml) {
  Tables::UriSchemeMap schemes;
  Tables::ReadUriSchemes(Reader(xml), schemes);
  std::map<std::string, std::string> texts;
  for (const auto& [scheme, description] : schemes)
    texts.emplace(scheme.ToString(), description.ToString());
  return texts;
}

TEST(ORBCefResourceTablesTest, MimeTypesAreTakenAtAnyDepthWhateverTheOtherNames) {
  EXPECT_THAT(MimeTypes("<?xml version=\"1.0\"?>\n<root>\n"
                        "  <mimeType type=\"text/javascript\" extension=\".js\"/>\n"
                        "  <group><deep><mimeType extension=\".css\" type=\"text/css\"/></deep>"
                        "</group>\n  <other type=\"x\" extension=\".x\"/>\n</root>"),
              ElementsAre(Pair(".css", "text/css"), Pair(".js", "text/javascript")));
}

TEST(ORBCefResourceTablesTest, TheFirstLineOfAnExtensionWins) {
  EXPECT_THAT(MimeTypes("<r><mimeType type=\"first\" extension=\".a\"/>"
                        "<mimeType type=\"second\" extension=\".a\"/></r>"),
              ElementsAre(Pair(".a", "first")));
}

TEST(ORBCefResourceTablesTest, AnElementWithoutAttributesAddsAnEntryWithAnEmptyKey) {
  EXPECT_THAT(MimeTypes("<r><mimeType/><mimeType type=\"t\" extension=\".a\"/></r>"),
              ElementsAre(Pair("", ""), Pair(".a", "t")));
}

TEST(ORBCefResourceTablesTest, AnEndTagRepeatsTheAttributesOfItsElement) {
  // The engine's reader gives an end tag the attributes of its start, so nothing new comes of it.
  EXPECT_THAT(MimeTypes("<r><mimeType type=\"t\" extension=\".a\">text</mimeType></r>"),
              ElementsAre(Pair(".a", "t")));
}

TEST(ORBCefResourceTablesTest, AnErrorEndsTheWalkAndKeepsWhatWasRead) {
  // The engine's reader parses ahead in blocks; the error lies in a later one.
  const std::string padding = "<!--" + std::string(64 * 1024, 'x') + "-->";
  EXPECT_THAT(MimeTypes("<r><mimeType type=\"t\" extension=\".a\"/>" + padding + "<broken" +
                        "<mimeType type=\"t\" extension=\".b\"/></r>"),
              ElementsAre(Pair(".a", "t")));
}

constexpr char kRegistry[] =
    "<?xml version=\"1.0\"?>\n<registry>\n"
    "  <record><value>mailto</value><file>x</file><description>Mail \xC3\xA4</description>"
    "</record>\n"
    "  <record><value>tel</value>\n<description>Phone</description></record>\n"
    "  <record><value>mailto</value><description>Other</description></record>\n"
    "  <record><value/><description/></record>\n"
    "  <people><person><value>never</value><description>Read</description></person></people>\n"
    "  <record><value>late</value><description>Never read</description></record>\n"
    "</registry>";

TEST(ORBCefResourceTablesTest, ASchemeHasTheDescriptionThatFollowsIt) {
  const auto schemes = UriSchemes(kRegistry);
  ASSERT_EQ(1u, schemes.count("tel"));
  EXPECT_EQ("Phone", schemes.at("tel"));
}

TEST(ORBCefResourceTablesTest, OfTwoRecordsOfASchemeTheFirstDescriptionStays) {
  EXPECT_EQ("Mail \xC3\xA4", UriSchemes(kRegistry).at("mailto"));
}

TEST(ORBCefResourceTablesTest, NothingIsReadFromThePeopleOn) {
  const auto schemes = UriSchemes(kRegistry);
  EXPECT_EQ(0u, schemes.count("never"));
  EXPECT_EQ(0u, schemes.count("late"));
}

// Plays a fixed row of element names and gives up after many moves behind its end.
class EndlessReader : public CefXmlReader {
 public:
  static constexpr int kGaveUp = 42;

  explicit EndlessReader(std::vector<std::string> names) : _names(std::move(names)) {}

  bool MoveToNextNode() override {
    if (++_position > static_cast<int>(_names.size()) + 10000)
      std::_Exit(kGaveUp);
    return _position < static_cast<int>(_names.size());
  }
  CefString GetLocalName() override {
    return _position < static_cast<int>(_names.size()) ? CefString(_names[_position]) : CefString();
  }
  NodeType GetType() override { return XML_NODE_UNSUPPORTED; }
  bool HasValue() override { return false; }

  bool Close() override { return false; }
  bool HasError() override { return false; }
  CefString GetError() override { return CefString(); }
  int GetDepth() override { return 0; }
  CefString GetPrefix() override { return CefString(); }
  CefString GetQualifiedName() override { return CefString(); }
  CefString GetNamespaceURI() override { return CefString(); }
  CefString GetBaseURI() override { return CefString(); }
  CefString GetXmlLang() override { return CefString(); }
  bool IsEmptyElement() override { return false; }
  CefString GetValue() override { return CefString(); }
  bool HasAttributes() override { return false; }
  size_t GetAttributeCount() override { return 0; }
  CefString GetAttribute(int) override { return CefString(); }
  CefString GetAttribute(const CefString&) override { return CefString(); }
  CefString GetAttribute(const CefString&, const CefString&) override { return CefString(); }
  CefString GetInnerXml() override { return CefString(); }
  CefString GetOuterXml() override { return CefString(); }
  int GetLineNumber() override { return 0; }
  bool MoveToAttribute(int) override { return false; }
  bool MoveToAttribute(const CefString&) override { return false; }
  bool MoveToAttribute(const CefString&, const CefString&) override { return false; }
  bool MoveToFirstAttribute() override { return false; }
  bool MoveToNextAttribute() override { return false; }
  bool MoveToCarryingElement() override { return false; }

 private:
  const std::vector<std::string> _names;
  int _position = -1;

  IMPLEMENT_REFCOUNTING(EndlessReader);
};

TEST(ORBCefResourceTablesTest, AValueWithoutALaterDescriptionKeepsTheReaderForGood) {
  fresh_process::ExpectExit(
      [] {
        Tables::UriSchemeMap schemes;
        Tables::ReadUriSchemes(new EndlessReader({"registry", "value", "value"}), schemes);
      },
      EndlessReader::kGaveUp);
}

TEST(ORBCefResourceTablesTest, AWellFormedRowEndsBeforeTheReaderGivesUp) {
  Tables::UriSchemeMap schemes;
  Tables::ReadUriSchemes(new EndlessReader({"value", "", "description", ""}), schemes);
  EXPECT_EQ(1u, schemes.size());
}

TEST(ORBCefResourceTablesTest, AMissingFileGivesNoReaderAndEmptyTables) {
  fresh_process::Run([] {
    FakeTools tools;
    TempDirectory root;
    tools.Set("ORBInstallPath", root.Path());
    EXPECT_FALSE(Tables::OpenResourceXml(Tables::kMimeTypesFile));
    Tables::LoadUriSchemes();
    EXPECT_THAT(Tables::UriSchemeTable(), IsEmpty());
    EXPECT_EQ("application/octet-stream", Tables::MimeTypeForExtension(".js"));
  });
}

TEST(ORBCefResourceTablesTest, AnEmptyExtensionTableIsReadAgainAndAFilledOneIsKept) {
  fresh_process::Run([] {
    FakeTools tools;
    TempDirectory root;
    tools.Set("ORBInstallPath", root.Path());
    EXPECT_EQ("application/octet-stream", Tables::MimeTypeForExtension(".js"));
    root.Write(Tables::kMimeTypesFile,
               "<r><mimeType type=\"text/javascript\" extension=\".js\"/></r>");
    EXPECT_EQ("text/javascript", Tables::MimeTypeForExtension(".js"));
    root.Write(Tables::kMimeTypesFile, "<r><mimeType type=\"other\" extension=\".js\"/></r>");
    EXPECT_EQ("text/javascript", Tables::MimeTypeForExtension(".js"));
  });
}

TEST(ORBCefResourceTablesTest, TheExtensionIsComparedByItsBytes) {
  fresh_process::Run([] {
    FakeTools tools;
    TempDirectory root;
    root.Write(Tables::kMimeTypesFile,
               "<r><mimeType type=\"text/javascript\" extension=\".js\"/></r>");
    tools.Set("ORBInstallPath", root.Path());
    EXPECT_EQ("text/javascript", Tables::MimeTypeForExtension(".js"));
    EXPECT_EQ("application/octet-stream", Tables::MimeTypeForExtension(".JS"));
    EXPECT_EQ("application/octet-stream", Tables::MimeTypeForExtension("js"));
    EXPECT_EQ("application/octet-stream", Tables::MimeTypeForExtension(""));
  });
}

TEST(ORBCefResourceTablesTest, TheSchemesAreReadOnceFromTheFirstRoot) {
  fresh_process::Run([] {
    FakeTools tools;
    TempDirectory first;
    TempDirectory second;
    first.Write(Tables::kUriSchemesFile,
                "<r><value>tel</value><description>Phone</description></r>");
    second.Write(Tables::kUriSchemesFile,
                 "<r><value>sip</value><description>Call</description></r>");
    tools.Set("ORBInstallPath", first.Path() + ";" + second.Path());
    Tables::LoadUriSchemes();
    EXPECT_THAT(Tables::UriSchemeTable(), ElementsAre(Pair(CefString("tel"), CefString("Phone"))));
    first.Write(Tables::kUriSchemesFile,
                "<r><value>other</value><description>Other</description></r>");
    Tables::LoadUriSchemes();
    EXPECT_THAT(Tables::UriSchemeTable(), ElementsAre(Pair(CefString("tel"), CefString("Phone"))));
  });
}

}  // namespace
