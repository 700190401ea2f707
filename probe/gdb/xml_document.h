#pragma once

#include <rapidxml/rapidxml.hpp>
#include <string>
#include <string_view>

#include "base/types.h"

using XML_NODE = rapidxml::xml_node<char>;

// A parsed XML document of a GDB server.
class CXmlDocument {
public:
  static constexpr size_t MAX_SIZE = 512 * 1024;  // bytes
  static constexpr int MAX_DEPTH = 32;            // of elements; the parser's stack grows with it

  // False with the reason in *psError.
  bool Parse(std::string sText, std::string* psError);
  // The outermost element; only behind a successful Parse.
  const XML_NODE* Root() const { return m_Document.first_node(); }

private:
  std::string m_sText;  // the document points into it
  rapidxml::xml_document<char> m_Document;
};

// Name without its namespace prefix.
bool IsElement(const XML_NODE* pNode, std::string_view sName);
// Empty when there is no such attribute.
std::string_view AttributeOf(const XML_NODE* pNode, const char* sName);
// Decimal, or hexadecimal with "0x". False when it is missing, no number or too large.
bool NumberOf(std::string_view sText, U64 Max, U64* pValue);
