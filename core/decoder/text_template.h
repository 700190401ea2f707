#pragma once
// Templates of assembler text. Characters stand for themselves; "<name>" is an operand directive, with up to three
// numbers separated by dots behind the name: bit position, width in bits, left shift. The directives are listed at the
// end of the directives' files.

#include <span>
#include <string_view>
#include <vector>

#include "core/decoder/inst.h"
#include "core/decoder/text_writer.h"

struct DIRECTIVE_ARGS {
  U8 Low = 0;
  U8 Width = 0;
  U8 Shift = 0;
};

using DIRECTIVE_FUNC = void (*)(CTextWriter& Out, const INST& Inst, DIRECTIVE_ARGS Args);

struct DIRECTIVE {
  const char* sName;
  DIRECTIVE_FUNC pfWrite;
};

// Null for an unknown name.
DIRECTIVE_FUNC FindDirective(std::string_view sName);

// The directives by subject.
std::span<const DIRECTIVE> GeneralDirectives();
std::span<const DIRECTIVE> ArmDirectives();
std::span<const DIRECTIVE> FloatDirectives();
std::span<const DIRECTIVE> SimdDirectives();

// A template taken apart once, when its table is built.
class CTextTemplate {
public:
  // sTemplate has to stay as long as the template.
  explicit CTextTemplate(const char* sTemplate);
  void Write(CTextWriter& Out, const INST& Inst) const {
    for (const PIECE& Piece : aPiece) {
      if (!Piece.sLiteral.empty()) Out.Add(Piece.sLiteral);
      if (Piece.pfWrite != nullptr) Piece.pfWrite(Out, Inst, Piece.Args);
    }
  }
  // False when the template names a directive that does not exist.
  bool IsValid() const { return bValid; }

private:
  struct PIECE {
    std::string_view sLiteral;  // written first
    DIRECTIVE_FUNC pfWrite = nullptr;
    DIRECTIVE_ARGS Args;
  };
  void AddDirective(std::string_view sText);

  std::vector<PIECE> aPiece;
  bool bValid = true;
};
