#include "probe/gdb/target_description.h"

#include <algorithm>
#include <cctype>

#include "probe/gdb/xml_document.h"
#include "probe/text.h"

namespace {

constexpr int MAX_INCLUDE_DEPTH = 4;
constexpr int MAX_DOCUMENTS = 32;
constexpr U64 MAX_NUMBER = 0xFFFF;
constexpr U64 MAX_BITS = 2048;

class CReader {
public:
  CReader(const DOCUMENT_SOURCE& Source, TARGET_DESCRIPTION* pDescription, std::string* psError)
      : m_Source(Source), m_pDescription(pDescription), m_psError(psError) {}

  bool ReadDocument(const std::string& sName, int Depth) {
    std::string sText;
    if (Depth > MAX_INCLUDE_DEPTH || ++m_NumDocuments > MAX_DOCUMENTS) return Fail("too many documents are included");
    if (!m_Source(sName, &sText)) return Fail(FormatText("\"%s\" cannot be read", sName.c_str()));
    CXmlDocument Document;
    std::string sError;
    if (!Document.Parse(std::move(sText), &sError)) {
      return Fail(FormatText("\"%s\": %s", sName.c_str(), sError.c_str()));
    }
    return ReadElements(Document.Root(), Depth);
  }

private:
  bool Fail(std::string sReason) {
    *m_psError = std::move(sReason);
    return false;
  }

  bool ReadElements(const XML_NODE* pNode, int Depth) {
    if (IsElement(pNode, "include")) return ReadDocument(std::string(AttributeOf(pNode, "href")), Depth + 1);
    if (IsElement(pNode, "reg")) return AddRegister(pNode);
    for (const XML_NODE* pChild = pNode->first_node(); pChild; pChild = pChild->next_sibling()) {
      if (!ReadElements(pChild, Depth)) return false;
    }
    return true;
  }

  bool AddRegister(const XML_NODE* pNode) {
    GDB_REGISTER Register;
    for (char c : AttributeOf(pNode, "name")) {
      Register.sName += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    U64 Number = m_NextNumber;
    U64 NumBits = 0;
    const std::string_view sNumber = AttributeOf(pNode, "regnum");
    if (!sNumber.empty() && !NumberOf(sNumber, MAX_NUMBER, &Number)) Number = MAX_NUMBER + 1;
    if (Number > MAX_NUMBER || !NumberOf(AttributeOf(pNode, "bitsize"), MAX_BITS, &NumBits) || NumBits == 0) {
      return Fail(FormatText("the register \"%s\" has no valid number or size", Register.sName.c_str()));
    }
    m_NextNumber = Number + 1;
    Register.Number = static_cast<U32>(Number);
    Register.NumBits = static_cast<U32>(NumBits);
    m_pDescription->Registers.push_back(std::move(Register));
    return true;
  }

  const DOCUMENT_SOURCE& m_Source;
  TARGET_DESCRIPTION* m_pDescription;
  std::string* m_psError;
  int m_NumDocuments = 0;
  U64 m_NextNumber = 0;
};

void Order(std::vector<GDB_REGISTER>* pRegisters) {
  std::stable_sort(pRegisters->begin(), pRegisters->end(),
                   [](const GDB_REGISTER& A, const GDB_REGISTER& B) { return A.Number < B.Number; });
  const auto Last = std::unique(pRegisters->begin(), pRegisters->end(),
                                [](const GDB_REGISTER& A, const GDB_REGISTER& B) { return A.Number == B.Number; });
  pRegisters->erase(Last, pRegisters->end());
}

}  // namespace

const GDB_REGISTER* TARGET_DESCRIPTION::Find(std::string_view sName) const {
  for (const GDB_REGISTER& Register : Registers) {
    if (Register.sName == sName) return &Register;
  }
  return nullptr;
}

bool ReadTargetDescription(const DOCUMENT_SOURCE& Source, TARGET_DESCRIPTION* pDescription, std::string* psError) {
  pDescription->Registers.clear();
  if (!CReader(Source, pDescription, psError).ReadDocument("target.xml", 0)) return false;
  Order(&pDescription->Registers);
  return true;
}

TARGET_DESCRIPTION LegacyArmDescription() {
  constexpr U32 NUM_CORE_REGISTERS = 16;
  constexpr U32 NUM_FLOAT_REGISTERS = 8;
  constexpr U32 FLOAT_BITS = 96;
  TARGET_DESCRIPTION Result;
  U32 Number = 0;
  for (; Number < NUM_CORE_REGISTERS; ++Number) Result.Registers.push_back({FormatText("r%u", Number), Number, 32});
  for (U32 i = 0; i < NUM_FLOAT_REGISTERS; ++i, ++Number) {
    Result.Registers.push_back({FormatText("f%u", i), Number, FLOAT_BITS});
  }
  Result.Registers.push_back({"fps", Number++, 32});
  Result.Registers.push_back({"cpsr", Number, 32});
  return Result;
}
