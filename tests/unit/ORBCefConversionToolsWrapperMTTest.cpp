#include "ORBCefConversionToolsWrapperMT.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeTools.h"

namespace {

namespace Conversion = ORBCefConversionToolsWrapperMT;
using MapHolder = ORBCefRecordHolder<orbcefstringmap_c>;
using ResponseHolder = ORBCefRecordHolder<orbcefresponse_c>;

std::string Text(const orbcefstring_c* record) {
  return Conversion::FromCString(record);
}

TEST(ORBCefConversionToolsWrapperMTTest, AnEmptyTextIsARecordWithoutData) {
  for (orbcefstring_c* record :
       {Conversion::ToCString(CefString()), Conversion::ToCString(std::string())}) {
    const ORBCefCStringHolder holder(record);
    ASSERT_NE(nullptr, record);
    EXPECT_EQ(nullptr, record->data);
    EXPECT_EQ(0u, record->length);
    EXPECT_NE(nullptr, record->free);
  }
}

TEST(ORBCefConversionToolsWrapperMTTest, ATextIsUTF8OnTheBoundary) {
  const std::string utf8 = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80";
  const ORBCefCStringHolder from_engine{CefString(utf8)};
  const ORBCefCStringHolder from_text(utf8);
  EXPECT_EQ(utf8, from_engine.Text());
  EXPECT_EQ(utf8, from_text.Text());
  EXPECT_EQ(utf8.size(), from_engine.Get()->length);
  EXPECT_EQ(5u, Conversion::FromCStringToCef(from_text.Get()).length());
  EXPECT_EQ(CefString(utf8), Conversion::FromCStringToCef(from_text.Get()));
}

TEST(ORBCefConversionToolsWrapperMTTest, EmbeddedZeroBytesAreKept) {
  const std::string text("a\0b\0", 4);
  const ORBCefCStringHolder record(text);
  EXPECT_EQ(4u, record.Get()->length);
  EXPECT_EQ(text, record.Text());
  EXPECT_EQ(4u, Conversion::FromCStringToCef(record.Get()).length());
  EXPECT_EQ(text, Conversion::ToStdString(Conversion::FromCStringToCef(record.Get())));
}

TEST(ORBCefConversionToolsWrapperMTTest, ANullRecordIsAnEmptyText) {
  EXPECT_EQ("", Conversion::FromCString(nullptr));
  EXPECT_TRUE(Conversion::FromCStringToCef(nullptr).empty());
}

TEST(ORBCefConversionToolsWrapperMTTest, TheEmptyEngineTextHasNoData) {
  EXPECT_EQ(nullptr, Conversion::ToCefString("").c_str());
  EXPECT_EQ("", Conversion::ToStdString(CefString()));
  EXPECT_EQ("x", Conversion::ToStdString(Conversion::ToCefString("x")));
}

TEST(ORBCefConversionToolsWrapperMTTest, FreeFunctionsIgnoreNull) {
  const ORBCefCStringHolder text(std::string("x"));
  text.Get()->free(nullptr);
  const MapHolder map(Conversion::ToCMap({}));
  map.Get()->free(nullptr);
  const ResponseHolder response(Conversion::MakeResponse(1, CefString(), {}));
  response.Get()->free(nullptr);
  EXPECT_EQ("x", text.Text());
  EXPECT_EQ(0u, map.Get()->_nb_values);
  EXPECT_EQ(1, response.Get()->status);
}

TEST(ORBCefConversionToolsWrapperMTTest, AMapKeepsEqualKeysAsPairsInTheMapsOrder) {
  CefRequest::HeaderMap headers;
  headers.emplace("B", "1");
  headers.emplace("A", "2");
  headers.emplace("B", "3");
  const MapHolder map(Conversion::ToCMap(headers));
  ASSERT_EQ(3u, map.Get()->_nb_values);
  EXPECT_EQ("A", Text(map.Get()->keys[0]));
  EXPECT_EQ("2", Text(map.Get()->values[0]));
  EXPECT_EQ("B", Text(map.Get()->keys[1]));
  EXPECT_EQ("1", Text(map.Get()->values[1]));
  EXPECT_EQ("B", Text(map.Get()->keys[2]));
  EXPECT_EQ("3", Text(map.Get()->values[2]));
}

TEST(ORBCefConversionToolsWrapperMTTest, AnEmptyMapHasNoArrays) {
  const MapHolder map(Conversion::ToCMap({}));
  ASSERT_TRUE(map);
  EXPECT_EQ(nullptr, map.Get()->keys);
  EXPECT_EQ(nullptr, map.Get()->values);
  EXPECT_EQ(0u, map.Get()->_nb_values);
}

TEST(ORBCefConversionToolsWrapperMTTest, AMapFreesItsElementsThroughTheirOwnFunctions) {
  CefRequest::HeaderMap headers;
  headers.emplace("A", "1");
  orbcefstringmap_c* map = Conversion::ToCMap(headers);
  map->values[0]->free(map->values[0]);
  map->values[0] = FakeTools::NewRecord("of another allocator");
  EXPECT_EQ(1, FakeTools::LiveRecords());
  map->free(map);
  EXPECT_EQ(0, FakeTools::LiveRecords());
}

TEST(ORBCefConversionToolsWrapperMTTest, ACloneOfAMapIsDeepAndKeepsNullElements) {
  CefRequest::HeaderMap headers;
  headers.emplace("A", "1");
  headers.emplace("B", "2");
  MapHolder map(Conversion::ToCMap(headers));
  map.Get()->values[1]->free(map.Get()->values[1]);
  map.Get()->values[1] = nullptr;
  const MapHolder clone(Conversion::CloneCMap(map.Get()));
  map = MapHolder();
  ASSERT_EQ(2u, clone.Get()->_nb_values);
  EXPECT_EQ("A", Text(clone.Get()->keys[0]));
  EXPECT_EQ("1", Text(clone.Get()->values[0]));
  EXPECT_EQ("B", Text(clone.Get()->keys[1]));
  EXPECT_EQ(nullptr, clone.Get()->values[1]);
  EXPECT_EQ(nullptr, Conversion::CloneCMap(nullptr));
}

TEST(ORBCefConversionToolsWrapperMTTest, AResponseHasAllThreeLevels) {
  CefRequest::HeaderMap headers;
  headers.emplace("Content-Type", "text/html");
  const ResponseHolder response(Conversion::MakeResponse(404, "Not Found", headers));
  EXPECT_EQ(404, response.Get()->status);
  EXPECT_EQ("Not Found", Text(response.Get()->text));
  ASSERT_EQ(1u, response.Get()->headers->_nb_values);
  EXPECT_EQ("text/html", Text(response.Get()->headers->values[0]));
}

TEST(ORBCefConversionToolsWrapperMTTest, ACloneOfAResponseIsDeepAndKeepsANullText) {
  CefRequest::HeaderMap headers;
  headers.emplace("A", "1");
  ResponseHolder response(Conversion::MakeResponse(200, "OK", headers));
  const ResponseHolder clone(Conversion::CloneResponse(response.Get()));
  response.Get()->text->free(response.Get()->text);
  response.Get()->text = nullptr;
  const ResponseHolder without_text(Conversion::CloneResponse(response.Get()));
  response = ResponseHolder();
  EXPECT_EQ(200, clone.Get()->status);
  EXPECT_EQ("OK", Text(clone.Get()->text));
  EXPECT_EQ("1", Text(clone.Get()->headers->values[0]));
  EXPECT_EQ(nullptr, without_text.Get()->text);
  EXPECT_EQ("1", Text(without_text.Get()->headers->values[0]));
  EXPECT_EQ(nullptr, Conversion::CloneResponse(nullptr));
}

TEST(ORBCefConversionToolsWrapperMTTest, AReplayResultOwnsItsMessage) {
  const ORBCefRecordHolder<orbcefreplayresult_c> result(
      Conversion::MakeReplayResult(200, "failed"));
  EXPECT_EQ(200, result.Get()->status);
  EXPECT_EQ("failed", Text(result.Get()->message));
}

TEST(ORBCefConversionToolsWrapperMTTest, AHolderFreesOnceAndCanHandOn) {
  { const ORBCefCStringHolder holder(FakeTools::NewRecord("x")); }
  EXPECT_EQ(0, FakeTools::LiveRecords());
  orbcefstring_c* record = nullptr;
  {
    ORBCefCStringHolder holder(FakeTools::NewRecord("x"));
    ORBCefCStringHolder moved = std::move(holder);
    EXPECT_FALSE(holder);
    record = moved.Release();
  }
  EXPECT_EQ(1, FakeTools::LiveRecords());
  record->free(record);
  EXPECT_EQ(0, FakeTools::LiveRecords());
}

}  // namespace
