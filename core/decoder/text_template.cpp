#include "core/decoder/text_template.h"

CTextTemplate::CTextTemplate(const char* sTemplate) {
  std::string_view sRest = sTemplate;
  while (!sRest.empty()) {
    const size_t Open = sRest.find('<');
    aPiece.push_back({sRest.substr(0, Open), nullptr, {}});
    if (Open == std::string_view::npos) break;
    const size_t Close = sRest.find('>', Open);
    if (Close == std::string_view::npos) {
      bValid = false;
      break;
    }
    AddDirective(sRest.substr(Open + 1, Close - Open - 1));
    sRest.remove_prefix(Close + 1);
  }
}

void CTextTemplate::AddDirective(std::string_view sText) {
  size_t NameLength = 0;
  while (NameLength < sText.size() && (sText[NameLength] < '0' || sText[NameLength] > '9')) ++NameLength;
  U8 aArg[3] = {};
  size_t Index = 0;
  for (const char c : sText.substr(NameLength)) {
    if (c == '.') {
      ++Index;
    } else if (Index < std::size(aArg)) {
      aArg[Index] = static_cast<U8>(aArg[Index] * 10 + (c - '0'));
    }
  }
  aPiece.back().pfWrite = FindDirective(sText.substr(0, NameLength));
  aPiece.back().Args = {aArg[0], aArg[1], aArg[2]};
  if (aPiece.back().pfWrite == nullptr || Index >= std::size(aArg)) bValid = false;
}

DIRECTIVE_FUNC FindDirective(std::string_view sName) {
  for (const auto& Directives : {GeneralDirectives(), ArmDirectives(), FloatDirectives(), SimdDirectives()}) {
    for (const DIRECTIVE& Directive : Directives) {
      if (sName == Directive.sName) return Directive.pfWrite;
    }
  }
  return nullptr;
}
