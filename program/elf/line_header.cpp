#include "program/elf/line_header.h"

#include <algorithm>

namespace {

constexpr U64 MIN_VERSION = 2;
constexpr U64 MAX_VERSION = 5;
constexpr U32 FIRST_VERSION_WITH_MAX_OPS = 4;
constexpr U32 FIRST_VERSION_WITH_FORMATS = 5;  // of directories and files; both then count from 0

enum CONTENT : U32 { CONTENT_PATH = 1, CONTENT_DIRECTORY = 2 };

struct ENTRY_FORMAT {
  U64 Content;
  U64 Form;
};

class CLineHeaderReader {
public:
  CLineHeaderReader(const LINE_SECTIONS& Sections, LINE_HEADER& Header)
      : Sections(Sections), Header(Header), Bytes(Sections.Line) {}

  DWARF_DAMAGE Read(U64 Offset) {
    Bytes.Skip(Offset);
    const U64 Length = Bytes.UnitLength(Header.b64);
    Bytes = Bytes.Take(Length);
    if (!Bytes.Ok()) return {"line table outside its section", "offset", Offset};
    const U64 Version = Bytes.Int<U16>();
    if (Version < MIN_VERSION || Version > MAX_VERSION) {
      return {"line table of an unknown version", "version", Version};
    }
    Header.Version = static_cast<U32>(Version);
    if (Version >= FIRST_VERSION_WITH_FORMATS) Bytes.Skip(2);  // sizes of addresses and segment selectors
    const U64 HeaderLength = ReadOffset();
    Header.Program = Bytes;
    Header.Program.Skip(HeaderLength);
    Bytes = Bytes.Take(HeaderLength);
    if (!Bytes.Ok()) return {"line table header longer than its table", "header_length", HeaderLength};
    if (!ReadRegisters()) return {"line table without opcodes", "opcode_base", Header.OpcodeBase};
    if (Version < FIRST_VERSION_WITH_FORMATS) return ReadOldTables();
    Header.FirstFile = 0;
    const DWARF_DAMAGE Damage = ReadEntries("directory", [this](const LINE_FILE& Dir) { AddDir(Dir.sName); });
    if (Damage.sWhat) return Damage;
    return ReadEntries("file", [this](const LINE_FILE& File) { Header.aFiles.push_back(File); });
  }

private:
  const LINE_SECTIONS& Sections;
  LINE_HEADER& Header;
  CByteCursor Bytes;

  U64 ReadOffset() { return Header.b64 ? Bytes.Int<U64>() : Bytes.Int<U32>(); }
  void AddDir(const char* sName) { Header.aDirs.push_back(sName ? sName : ""); }

  bool ReadRegisters() {
    Header.MinInstLength = static_cast<U32>(Bytes.Int<U8>());
    if (Header.Version >= FIRST_VERSION_WITH_MAX_OPS) Header.MaxOps = static_cast<U32>(Bytes.Int<U8>());
    Header.bIsStmt = Bytes.Int<U8>() != 0;
    Header.LineBase = static_cast<I32>(Bytes.SInt(1));
    Header.LineRange = static_cast<U32>(Bytes.Int<U8>());
    Header.OpcodeBase = static_cast<U32>(Bytes.Int<U8>());
    Header.pOpcodeLengths = Bytes.Bytes();
    if (Header.OpcodeBase == 0) return false;
    Bytes.Skip(Header.OpcodeBase - 1);
    return Bytes.Ok();
  }

  // Versions 2 to 4: lists of texts that an empty one ends.
  DWARF_DAMAGE ReadOldTables() {
    AddDir("");
    for (const char* sDir = Bytes.Text(); sDir && *sDir; sDir = Bytes.Text()) {
      if (Header.aDirs.size() <= MAX_LINE_FILES) AddDir(sDir);
    }
    for (const char* sName = Bytes.Text(); sName && *sName; sName = Bytes.Text()) {
      Header.aFiles.push_back({sName, Bytes.Leb()});
      Bytes.Leb();  // time
      Bytes.Leb();  // length
      if (Header.aDirs.size() + Header.aFiles.size() > MAX_LINE_FILES)
        return {"table with too many entries", "file", MAX_LINE_FILES};
    }
    if (Bytes.Ok()) return {};
    return {"table of files longer than its header", "file", Header.aFiles.size()};
  }

  template <typename ADD>
  DWARF_DAMAGE ReadEntries(const char* sItem, ADD Add) {
    std::vector<ENTRY_FORMAT> aFormats(Bytes.Int<U8>());
    for (ENTRY_FORMAT& Format : aFormats) {
      Format.Content = Bytes.Leb();
      Format.Form = Bytes.Leb();
    }
    const U64 Count = Bytes.Leb();
    if (Count != 0 && aFormats.empty()) return {"table without formats", sItem, Count};
    for (U64 i = 0; i < Count && Bytes.Ok(); ++i) {
      if (i == MAX_LINE_FILES) return {"table with too many entries", sItem, Count};
      const U64 At = Bytes.Position();
      LINE_FILE Entry;
      for (const ENTRY_FORMAT& Format : aFormats) {
        if (!ReadValue(Format, Entry)) return {"text outside its section", sItem, i};
      }
      if (Bytes.Ok() && Bytes.Position() == At) return {"entry without bytes", sItem, i};
      Add(Entry);
    }
    if (Bytes.Ok()) return {};
    return {"table with a form that is not known, or longer than its header", sItem, Count};
  }

  // False for a text outside its section.
  bool ReadValue(const ENTRY_FORMAT& Format, LINE_FILE& Entry) {
    const U32 Form = static_cast<U32>(std::min<U64>(Format.Form, ~0u));
    const bool bPath = Format.Content == CONTENT_PATH;
    if (bPath && Form == DW_FORM_string) {
      Entry.sName = Bytes.Text();
    } else if (bPath && (Form == DW_FORM_line_strp || Form == DW_FORM_strp)) {
      Entry.sName = TextAt(Form == DW_FORM_strp ? Sections.Str : Sections.LineStr, ReadOffset());
      return Entry.sName || !Bytes.Ok();
    } else if (Format.Content == CONTENT_DIRECTORY) {
      Entry.Dir = Form == DW_FORM_udata ? Bytes.Leb() : Bytes.UInt(static_cast<U32>(FixedFormSize(Form, Sizes())));
    } else {
      SkipForm(Bytes, Form, Sizes());
    }
    return true;
  }

  FORM_SIZES Sizes() const {
    const U8 Offset = Header.b64 ? 8 : 4;
    return {4, Offset, Offset};
  }

  static const char* TextAt(CByteCursor Section, U64 Offset) {
    Section.Skip(Offset);
    return Section.Text();
  }
};

}  // namespace

DWARF_DAMAGE ReadLineHeader(const LINE_SECTIONS& Sections, U64 Offset, LINE_HEADER& Header) {
  Header = {};
  return CLineHeaderReader(Sections, Header).Read(Offset);
}
