#include "program/elf/line_header.h"

namespace {

constexpr U64 MIN_VERSION = 2;
constexpr U64 MAX_VERSION = 5;
constexpr U32 FIRST_VERSION_WITH_MAX_OPS = 4;
constexpr U32 FIRST_VERSION_WITH_FORMATS = 5;  // of directories and files; both then count from 0
constexpr U64 DATA16_SIZE = 16;                // bytes

enum CONTENT : U32 { CONTENT_PATH = 1, CONTENT_DIRECTORY = 2 };

enum FORM : U32 {
  FORM_BLOCK2 = 0x03,
  FORM_BLOCK4 = 0x04,
  FORM_DATA2 = 0x05,
  FORM_DATA4 = 0x06,
  FORM_DATA8 = 0x07,
  FORM_STRING = 0x08,
  FORM_BLOCK = 0x09,
  FORM_BLOCK1 = 0x0a,
  FORM_DATA1 = 0x0b,
  FORM_SDATA = 0x0d,
  FORM_STRP = 0x0e,
  FORM_UDATA = 0x0f,
  FORM_SEC_OFFSET = 0x17,
  FORM_STRX = 0x1a,
  FORM_STRP_SUP = 0x1d,
  FORM_DATA16 = 0x1e,
  FORM_LINE_STRP = 0x1f,
  FORM_STRX1 = 0x25,
  FORM_STRX2 = 0x26,
  FORM_STRX3 = 0x27,
  FORM_STRX4 = 0x28,
};

struct ENTRY_FORMAT {
  U64 Content;
  U64 Form;
};

class CLineHeaderReader {
public:
  CLineHeaderReader(const LINE_SECTIONS& Sections, LINE_HEADER& Header)
      : Sections(Sections), Header(Header), Bytes(Sections.Line) {}

  LINE_DAMAGE Read(U64 Offset) {
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
    const LINE_DAMAGE Damage = ReadEntries("directory", [this](const LINE_FILE& Dir) { AddDir(Dir.sName); });
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
  LINE_DAMAGE ReadOldTables() {
    AddDir("");
    for (const char* sDir = Bytes.Text(); sDir && *sDir; sDir = Bytes.Text()) AddDir(sDir);
    for (const char* sName = Bytes.Text(); sName && *sName; sName = Bytes.Text()) {
      Header.aFiles.push_back({sName, Bytes.Leb()});
      Bytes.Leb();  // time
      Bytes.Leb();  // length
    }
    if (Bytes.Ok()) return {};
    return {"table of files longer than its header", "file", Header.aFiles.size()};
  }

  template <typename ADD>
  LINE_DAMAGE ReadEntries(const char* sItem, ADD Add) {
    std::vector<ENTRY_FORMAT> aFormats(Bytes.Int<U8>());
    for (ENTRY_FORMAT& Format : aFormats) {
      Format.Content = Bytes.Leb();
      Format.Form = Bytes.Leb();
    }
    const U64 Count = Bytes.Leb();
    if (Count != 0 && aFormats.empty()) return {"table without formats", sItem, Count};
    for (U64 i = 0; i < Count && Bytes.Ok(); ++i) {
      LINE_FILE Entry;
      for (const ENTRY_FORMAT& Format : aFormats) {
        if (!ReadValue(Format, Entry)) return {"form that is not known, or text outside its section", sItem, i};
      }
      Add(Entry);
    }
    if (Bytes.Ok()) return {};
    return {"table longer than its header", sItem, Count};
  }

  // False for a form that is not known, and for a text outside its section.
  bool ReadValue(const ENTRY_FORMAT& Format, LINE_FILE& Entry) {
    const char* sText = nullptr;
    U64 Number = 0;
    switch (Format.Form) {
      case FORM_STRING:
        sText = Bytes.Text();
        break;
      case FORM_LINE_STRP:
        sText = TextAt(Sections.LineStr, ReadOffset());
        if (!sText && Bytes.Ok()) return false;
        break;
      case FORM_STRP:
        sText = TextAt(Sections.Str, ReadOffset());
        if (!sText && Bytes.Ok()) return false;
        break;
      default:
        if (!ReadNumber(Format.Form, Number)) return false;
    }
    if (Format.Content == CONTENT_PATH) Entry.sName = sText;
    if (Format.Content == CONTENT_DIRECTORY) Entry.Dir = Number;
    return true;
  }

  // Blocks, and texts that another file or another unit's table holds, are stepped over.
  bool ReadNumber(U64 Form, U64& Number) {
    switch (Form) {
      case FORM_DATA1:
      case FORM_STRX1:
        Number = Bytes.Int<U8>();
        return true;
      case FORM_DATA2:
      case FORM_STRX2:
        Number = Bytes.Int<U16>();
        return true;
      case FORM_STRX3:
        Number = Bytes.UInt(3);
        return true;
      case FORM_DATA4:
      case FORM_STRX4:
        Number = Bytes.Int<U32>();
        return true;
      case FORM_DATA8:
        Number = Bytes.Int<U64>();
        return true;
      case FORM_UDATA:
      case FORM_STRX:
        Number = Bytes.Leb();
        return true;
      case FORM_SDATA:
        Number = static_cast<U64>(Bytes.Sleb());
        return true;
      case FORM_SEC_OFFSET:
      case FORM_STRP_SUP:
        Number = ReadOffset();
        return true;
      default:
        return SkipBlock(Form);
    }
  }

  bool SkipBlock(U64 Form) {
    switch (Form) {
      case FORM_DATA16:
        Bytes.Skip(DATA16_SIZE);
        return true;
      case FORM_BLOCK:
        Bytes.Skip(Bytes.Leb());
        return true;
      case FORM_BLOCK1:
        Bytes.Skip(Bytes.Int<U8>());
        return true;
      case FORM_BLOCK2:
        Bytes.Skip(Bytes.Int<U16>());
        return true;
      case FORM_BLOCK4:
        Bytes.Skip(Bytes.Int<U32>());
        return true;
      default:
        return false;
    }
  }

  static const char* TextAt(CByteCursor Section, U64 Offset) {
    Section.Skip(Offset);
    return Section.Text();
  }
};

}  // namespace

LINE_DAMAGE ReadLineHeader(const LINE_SECTIONS& Sections, U64 Offset, LINE_HEADER& Header) {
  Header = {};
  return CLineHeaderReader(Sections, Header).Read(Offset);
}
