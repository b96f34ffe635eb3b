// A reader of XML that goes from node to node, for small files in UTF-8 without a document type. It
// stops at the first thing that is not well formed. One thread at a time.
#include <array>
#include <cstdlib>
#include <vector>

#include "audit.h"
#include "glue_conversions.h"
#include "neutral_classes.h"
#include "script.h"
#include "utf.h"

namespace standin {

namespace {

struct Attribute {
  std::string name;
  std::string value;
};

struct XmlNode {
  cef_xml_node_type_t type = XML_NODE_UNSUPPORTED;
  std::string name;
  std::string value;
  std::vector<Attribute> attributes;
  int depth = 0;
  bool is_empty = false;
};

struct Entity {
  const char* name;
  const char* text;
};
constexpr Entity kEntities[] = {
    {"lt", "<"}, {"gt", ">"}, {"amp", "&"}, {"quot", "\""}, {"apos", "'"}};

constexpr char kBlanks[] = " \t\r\n";

std::string LocalName(const std::string& name) {
  const size_t colon = name.find(':');
  return colon == std::string::npos ? name : name.substr(colon + 1);
}

std::string Everything(const CefRefPtr<CefStreamReader>& stream) {
  std::string text;
  std::array<char, 4096> block;
  while (const size_t count = stream->Read(block.data(), 1, block.size())) {
    text.append(block.data(), count);
  }
  return text;
}

class StandinXmlReader : public engine_neutral::NeutralXmlReader {
 public:
  StandinXmlReader(std::string text, const CefString& uri) : _text(std::move(text)), _uri(uri) {
    if (_text.compare(0, 3, "\xEF\xBB\xBF") == 0) {
      _at = 3;
    }
  }

  bool MoveToNextNode() override {
    _node = XmlNode();
    if (_has_error || !Next()) {
      _node = XmlNode();
      return false;
    }
    return true;
  }
  bool Close() override {
    _text.clear();
    _at = 0;
    return true;
  }
  bool HasError() override { return _has_error; }
  CefString GetError() override { return _has_error ? "not well formed" : ""; }
  NodeType GetType() override { return _node.type; }
  int GetDepth() override { return _node.depth; }
  CefString GetLocalName() override { return LocalName(_node.name); }
  CefString GetPrefix() override {
    const size_t colon = _node.name.find(':');
    return colon == std::string::npos ? std::string() : _node.name.substr(0, colon);
  }
  CefString GetQualifiedName() override { return _node.name; }
  CefString GetBaseURI() override { return _uri; }
  bool IsEmptyElement() override { return _node.is_empty; }
  bool HasValue() override { return !_node.value.empty(); }
  CefString GetValue() override { return _node.value; }
  bool HasAttributes() override { return !_node.attributes.empty(); }
  size_t GetAttributeCount() override { return _node.attributes.size(); }
  CefString GetAttribute(int index) override {
    return index >= 0 && static_cast<size_t>(index) < _node.attributes.size()
               ? CefString(_node.attributes[static_cast<size_t>(index)].value)
               : CefString();
  }
  CefString GetAttribute(const CefString& qualifiedName) override {
    const std::string name = qualifiedName.ToString();
    for (const Attribute& attribute : _node.attributes) {
      if (attribute.name == name) {
        return attribute.value;
      }
    }
    return CefString();
  }

 private:
  bool Fail() {
    _has_error = true;
    return false;
  }

  bool StartsWith(const char* text) const {
    return _text.compare(_at, std::char_traits<char>::length(text), text) == 0;
  }

  bool Next() {
    if (_at >= _text.size()) {
      // An element that never ended.
      return _open.empty() ? false : Fail();
    }
    if (_text[_at] != '<') {
      return NextText();
    }
    if (StartsWith("<?")) {
      return NextInstruction();
    }
    if (StartsWith("<!--")) {
      return NextUntil("<!--", "-->", XML_NODE_COMMENT, "#comment");
    }
    if (StartsWith("<![CDATA[")) {
      return NextUntil("<![CDATA[", "]]>", XML_NODE_CDATA, "#cdata-section");
    }
    if (StartsWith("<!")) {
      return NextUntil("<!", ">", XML_NODE_DOCUMENT_TYPE, "#doctype");
    }
    return StartsWith("</") ? NextEnd() : NextStart();
  }

  // The declaration at the head is no node.
  bool NextInstruction() {
    const bool is_declaration = StartsWith("<?xml ");
    if (!NextUntil("<?", "?>", XML_NODE_PROCESSING_INSTRUCTION, "#instruction")) {
      return false;
    }
    return is_declaration ? Next() : true;
  }

  bool NextUntil(const char* head, const char* tail, cef_xml_node_type_t type, const char* name) {
    const size_t start = _at + std::char_traits<char>::length(head);
    const size_t end = _text.find(tail, start);
    if (end == std::string::npos) {
      return Fail();
    }
    Begin(type, name);
    _node.value = _text.substr(start, end - start);
    _at = end + std::char_traits<char>::length(tail);
    return true;
  }

  bool NextText() {
    const size_t end = std::min(_text.find('<', _at), _text.size());
    std::string value;
    if (!Decode(_text.substr(_at, end - _at), value)) {
      return Fail();
    }
    const bool is_blank = value.find_first_not_of(kBlanks) == std::string::npos;
    _at = end;
    if (_open.empty()) {
      return is_blank ? Next() : Fail();
    }
    Begin(is_blank ? XML_NODE_WHITESPACE : XML_NODE_TEXT, "#text");
    _node.value = std::move(value);
    return true;
  }

  bool NextEnd() {
    const size_t end = _text.find('>', _at);
    if (end == std::string::npos || _open.empty()) {
      return Fail();
    }
    std::string name = _text.substr(_at + 2, end - _at - 2);
    name.erase(name.find_last_not_of(kBlanks) + 1);
    if (name != _open.back().name) {
      return Fail();
    }
    // It has the attributes of its start.
    _node = _open.back();
    _node.type = XML_NODE_ELEMENT_END;
    _open.pop_back();
    _at = end + 1;
    return true;
  }

  bool NextStart() {
    ++_at;
    const std::string name = TakeName();
    if (name.empty()) {
      return Fail();
    }
    Begin(XML_NODE_ELEMENT_START, name);
    for (;;) {
      const bool has_blank = SkipBlanks();
      if (StartsWith("/>")) {
        _node.is_empty = true;
        _at += 2;
        return true;
      }
      if (StartsWith(">")) {
        _open.push_back(_node);
        ++_at;
        return true;
      }
      if (!has_blank || !TakeAttribute()) {
        return Fail();
      }
    }
  }

  bool TakeAttribute() {
    Attribute attribute;
    attribute.name = TakeName();
    SkipBlanks();
    if (attribute.name.empty() || !StartsWith("=")) {
      return false;
    }
    ++_at;
    SkipBlanks();
    const char quote = _at < _text.size() ? _text[_at] : '\0';
    const size_t end = _text.find(quote, _at + 1);
    if ((quote != '"' && quote != '\'') || end == std::string::npos ||
        !Decode(_text.substr(_at + 1, end - _at - 1), attribute.value)) {
      return false;
    }
    _at = end + 1;
    _node.attributes.push_back(attribute);
    return true;
  }

  std::string TakeName() {
    const size_t end = std::min(_text.find_first_of(" \t\r\n=/<>\"'&", _at), _text.size());
    const std::string name = _text.substr(_at, end - _at);
    _at = end;
    return name;
  }

  bool SkipBlanks() {
    const size_t start = _at;
    _at = std::min(_text.find_first_not_of(kBlanks, _at), _text.size());
    return _at > start;
  }

  void Begin(cef_xml_node_type_t type, const std::string& name) {
    _node = XmlNode();
    _node.type = type;
    _node.name = name;
    _node.depth = static_cast<int>(_open.size());
  }

  static bool Decode(const std::string& source, std::string& text) {
    for (size_t at = 0; at < source.size(); ++at) {
      if (source[at] == '<') {
        return false;
      }
      if (source[at] != '&') {
        text.push_back(source[at]);
        continue;
      }
      const size_t end = source.find(';', at);
      if (end == std::string::npos || !DecodeEntity(source.substr(at + 1, end - at - 1), text)) {
        return false;
      }
      at = end;
    }
    return true;
  }

  static bool DecodeEntity(const std::string& name, std::string& text) {
    if (name.size() > 1 && name.front() == '#') {
      const bool is_hex = name[1] == 'x';
      const unsigned long code =
          std::strtoul(name.c_str() + (is_hex ? 2 : 1), nullptr, is_hex ? 16 : 10);
      AppendUtf8(text, static_cast<char32_t>(code));
      return code != 0;
    }
    for (const Entity& entity : kEntities) {
      if (name == entity.name) {
        text += entity.text;
        return true;
      }
    }
    return false;
  }

  std::string _text;
  const CefString _uri;
  size_t _at = 0;
  bool _has_error = false;
  XmlNode _node;
  std::vector<XmlNode> _open;

  STANDIN_OBJECT(StandinXmlReader);
};

}  // namespace

}  // namespace standin

extern "C" cef_xml_reader_t* cef_xml_reader_create(cef_stream_reader_t* stream,
                                                   cef_xml_encoding_type_t encodingType,
                                                   const cef_string_t* URI) {
  const CefRefPtr<CefStreamReader> source = engine_glue::FromC(stream);
  if (!source || standin::TakeFault("xml_reader")) {
    return nullptr;
  }
  return engine_glue::ToC(CefRefPtr<CefXmlReader>(
      new standin::StandinXmlReader(standin::Everything(source), CefString(URI))));
}
