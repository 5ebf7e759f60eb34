// Helpers for the persistence tests: write a layer to a string, parse a
// document into a tree with expat (independently of the library's reader),
// hand-build contour elements, and stream very large documents lazily.
#pragma once

#include <expat.h>

#include <map>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

#include "layer/contour_layer.h"
#include "persistence/sax_contour_layer.h"

namespace testing_support {

// The document MSAXWriter makes of a layer.
inline std::string WriteLayerDocument(CONTOUR_LAYER& layer, const char* streamName = nullptr) {
  std::ostringstream out;
  MSAXWriter writer(out);
  const bool ok = writer.WriteDocument(MSaxContourLayer(&layer, streamName));
  return ok ? out.str() : "write failed: " + writer.GetError();
}

// One element of a parsed document.
struct XmlNode {
  std::string name;
  std::map<std::string, std::string> attributes;
  std::string text;  // all character data directly inside the element
  std::vector<XmlNode> children;

  std::vector<std::string> ChildNames() const {
    std::vector<std::string> names;
    for (const XmlNode& child : children)
      names.push_back(child.name);
    return names;
  }
};

// Parses a whole document with expat into a tree; `ok` false when malformed.
inline XmlNode ParseXmlTree(const std::string& document, bool& ok) {
  struct Builder {
    XmlNode root;
    std::vector<XmlNode*> path;
  } builder;
  builder.root.name = "#document";
  builder.path.push_back(&builder.root);
  XML_Parser parser = XML_ParserCreate(nullptr);
  XML_SetUserData(parser, &builder);
  XML_SetElementHandler(
      parser,
      [](void* data, const char* name, const char** attributes) {
        auto* b = static_cast<Builder*>(data);
        XmlNode node;
        node.name = name;
        for (const char** a = attributes; *a != nullptr; a += 2)
          node.attributes[a[0]] = a[1];
        b->path.back()->children.push_back(node);
        b->path.push_back(&b->path.back()->children.back());
      },
      [](void* data, const char*) { static_cast<Builder*>(data)->path.pop_back(); });
  XML_SetCharacterDataHandler(parser, [](void* data, const char* text, int length) {
    static_cast<Builder*>(data)->path.back()->text.append(text, static_cast<size_t>(length));
  });
  ok = XML_Parse(parser, document.data(), static_cast<int>(document.size()), XML_TRUE) == XML_STATUS_OK;
  XML_ParserFree(parser);
  return builder.root.children.empty() ? XmlNode() : builder.root.children.front();
}

// A "Contour" element written by hand; `points` is the content of "Points".
inline std::string ContourXml(const std::string& points,
                              const std::string& flags = "<Type>1</Type><Closed>1</Closed>") {
  return "<Contour>" + flags + "<Points>" + points + "</Points></Contour>\n";
}

// The content of "Points" with the given Count text and base64 Data text.
inline std::string PointsXml(const std::string& count, const std::string& data) {
  return "<Dim>2</Dim><DataType>long</DataType><Count>" + count + "</Count><Data>" + data + "</Data>";
}

// A stream of head, then `repeats` copies of `filler`, then tail, produced on
// demand so that a document of hundreds of megabytes takes no memory.
class RepeatingStreambuf : public std::streambuf {
 public:
  RepeatingStreambuf(std::string head, std::string filler, size_t repeats, std::string tail)
      : head_(std::move(head)), filler_(std::move(filler)), m_tail(std::move(tail)), m_repeats(repeats) {}

 protected:
  int_type underflow() override {
    std::string* next = m_piece == 0               ? &head_
                        : m_piece <= m_repeats     ? &filler_
                        : m_piece == m_repeats + 1 ? &m_tail
                                                   : nullptr;
    if (next == nullptr)
      return traits_type::eof();
    ++m_piece;
    if (next->empty())
      return underflow();
    setg(next->data(), next->data(), next->data() + next->size());
    return traits_type::to_int_type(*gptr());
  }

 private:
  std::string head_, filler_, m_tail;
  size_t m_repeats;
  size_t m_piece = 0;  // the next piece: 0 head, 1..repeats filler, repeats + 1 tail
};

}  // namespace testing_support
