#include "probe/gdb/xml_document.h"

#include <algorithm>
#include <charconv>

namespace {

// Behind the end of a construct that begins at Pos; the end of the text when it has none.
size_t Behind(std::string_view sText, size_t Pos, std::string_view sEnd) {
  const size_t Found = sText.find(sEnd, Pos);
  return Found == std::string_view::npos ? sText.size() : Found + sEnd.size();
}

// Position of the '>' that ends a tag, quoted values skipped.
size_t EndOfTag(std::string_view sText, size_t Pos) {
  char Quote = 0;
  for (; Pos < sText.size(); ++Pos) {
    const char c = sText[Pos];
    if (Quote) {
      if (c == Quote) Quote = 0;
    } else if (c == '"' || c == '\'') {
      Quote = c;
    } else if (c == '>') {
      break;
    }
  }
  return Pos;
}

// Behind the '>' of a document type, whose part in brackets may hold more of them.
size_t BehindDocType(std::string_view sText, size_t Pos) {
  int Depth = 0;
  for (; Pos < sText.size(); ++Pos) {
    if (sText[Pos] == '[') ++Depth;
    if (sText[Pos] == ']') --Depth;
    if (sText[Pos] == '>' && Depth == 0) return Pos + 1;
  }
  return Pos;
}

// Behind what begins with "<!" or "<?" at Pos.
size_t BehindSpecial(std::string_view sText, size_t Pos) {
  constexpr struct { std::string_view sBegin, sEnd; } FORMS[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
  const std::string_view sRest = sText.substr(Pos);
  for (const auto& Form : FORMS) {
    if (sRest.starts_with(Form.sBegin)) return Behind(sText, Pos + Form.sBegin.size(), Form.sEnd);
  }
  return sRest.starts_with("<!DOCTYPE") ? BehindDocType(sText, Pos) : Behind(sText, Pos, ">");
}

// The parser recurses for every level: what it will meet is counted ahead, with its own idea of where things end.
bool IsTooDeep(std::string_view sText) {
  int Depth = 0;
  size_t Pos = 0;
  while ((Pos = sText.find('<', Pos)) != std::string_view::npos) {
    const char Next = Pos + 1 < sText.size() ? sText[Pos + 1] : 0;
    if (Next == '!' || Next == '?') {
      Pos = BehindSpecial(sText, Pos);
      continue;
    }
    const size_t End = EndOfTag(sText, Pos);
    if (Next == '/') {
      --Depth;
    } else if (sText[End - 1] != '/') {
      ++Depth;
    }
    if (Depth > CXmlDocument::MAX_DEPTH) return true;
    Pos = End;
  }
  return false;
}

}  // namespace

bool CXmlDocument::Parse(std::string sText, std::string* psError) {
  if (sText.size() > MAX_SIZE) {
    *psError = "the document is too large";
    return false;
  }
  if (IsTooDeep(sText)) {
    *psError = "elements are nested too deeply";
    return false;
  }
  m_sText = std::move(sText);
  m_Document.clear();
  try {
    m_Document.parse<rapidxml::parse_default>(m_sText.data());
  } catch (const rapidxml::parse_error& Error) {
    *psError = Error.what();
    return false;
  }
  if (!Root()) *psError = "there is no element";
  return Root() != nullptr;
}

bool IsElement(const XML_NODE* pNode, std::string_view sName) {
  std::string_view sOwn(pNode->name(), pNode->name_size());
  if (const size_t Colon = sOwn.find(':'); Colon != std::string_view::npos) sOwn.remove_prefix(Colon + 1);
  return pNode->type() == rapidxml::node_element && sOwn == sName;
}

std::string_view AttributeOf(const XML_NODE* pNode, const char* sName) {
  const auto* pAttribute = pNode->first_attribute(sName);
  return pAttribute ? std::string_view(pAttribute->value(), pAttribute->value_size()) : std::string_view();
}

bool NumberOf(std::string_view sText, U64 Max, U64* pValue) {
  const bool bHex = sText.starts_with("0x") || sText.starts_with("0X");
  if (bHex) sText.remove_prefix(2);
  U64 Value = 0;
  const char* pEnd = sText.data() + sText.size();
  const auto [pLast, Error] = std::from_chars(sText.data(), pEnd, Value, bHex ? 16 : 10);
  if (Error != std::errc() || pLast != pEnd || Value > Max) return false;
  *pValue = Value;
  return true;
}
