#include <iterator>
#include <vector>

#include <rapidxml/rapidxml.hpp>

// The printer's functions call each other before they are declared, which only argument-dependent look-up at the point
// of instantiation could find, and does not.
namespace rapidxml::internal {
template <class OutIt, class Ch>
OutIt print_children(OutIt Out, const xml_node<Ch>* pNode, int Flags, int Indent);
template <class OutIt, class Ch>
OutIt print_attributes(OutIt Out, const xml_node<Ch>* pNode, int Flags);
template <class OutIt, class Ch>
OutIt print_data_node(OutIt Out, const xml_node<Ch>* pNode, int Flags, int Indent);
template <class OutIt, class Ch>
OutIt print_cdata_node(OutIt Out, const xml_node<Ch>* pNode, int Flags, int Indent);
template <class OutIt, class Ch>
OutIt print_element_node(OutIt Out, const xml_node<Ch>* pNode, int Flags, int Indent);
template <class OutIt, class Ch>
OutIt print_declaration_node(OutIt Out, const xml_node<Ch>* pNode, int Flags, int Indent);
template <class OutIt, class Ch>
OutIt print_comment_node(OutIt Out, const xml_node<Ch>* pNode, int Flags, int Indent);
template <class OutIt, class Ch>
OutIt print_doctype_node(OutIt Out, const xml_node<Ch>* pNode, int Flags, int Indent);
template <class OutIt, class Ch>
OutIt print_pi_node(OutIt Out, const xml_node<Ch>* pNode, int Flags, int Indent);
}  // namespace rapidxml::internal
#include <rapidxml/rapidxml_print.hpp>

#include "device/device_config.h"
#include "device/probe_api/records.h"

namespace {

constexpr I64 HZ_PER_KHZ = 1000;
constexpr qsizetype MAX_DEVICE_NAME_BYTES = 256;
constexpr qsizetype MAX_TAGS = 1000;  // the parser takes stack for every level of nesting
constexpr char ROOT[] = "VNodeSettings";
constexpr char SPEED_AUTO[] = "auto";
constexpr char SPEED_ADAPTIVE[] = "adaptive";

struct XML_ATTRIBUTE {
  const char* sElement;
  const char* sName;
  DEV_CONFIG_PARAMS Param;
  I32 Default;
};

// Elements and attributes in the order of the document.
constexpr XML_ATTRIBUTE ATTRIBUTES[] = {
    {"HostInterface", "ConnectMode", DCP_CONNECT_MODE, HOST_IF_USB},
    {"HostInterface", "USBSerialNo", DCP_USB_SERIAL_NO, 0},
    {"HostInterface", "HostName", DCP_HOST_NAME, 0},
    {"HostInterface", "UseSerialNo", DCP_USE_SERIAL_NO, 0},
    {"TargetDevice", "CoreIndex", DCP_CORE_INDEX, 0},
    {"TargetDevice", "Endian", DCP_ENDIAN, ENDIAN_LITTLE},
    {"TargetDevice", "DeviceName", DCP_DEVICE_NAME, 0},
    {"TargetInterface", "TargetIF", DCP_TARGET_IF, VNODE_TIF_SWD},
    {"TargetInterface", "DRPre", DCP_DR_PRE, 0},
    {"TargetInterface", "IRPre", DCP_IR_PRE, 0},
    {"TargetInterface", "MultipleTargets", DCP_MULTIPLE_TARGETS, 0},
    {"TargetInterface", "Speed", DCP_SPEED, 0},
    {"TargetInterface", "UseAdaptive", DCP_USE_ADAPTIVE, 0},
    {"TargetInterface", "UseMaxSpeed", DCP_USE_MAX_SPEED, 0},
};

QByteArray SpeedText(U32 Speed) {
  if (Speed == VNODE_SPEED_AUTO) return SPEED_AUTO;
  if (Speed == VNODE_SPEED_ADAPTIVE) return SPEED_ADAPTIVE;
  return QByteArray::number(std::max<I64>(Speed / HZ_PER_KHZ, 1));
}

QByteArray NameText(const QByteArray& sName) {
  if (!sName.contains(' ') || sName.startsWith('"') || sName.size() + 2 > MAX_DEVICE_NAME_BYTES) return sName;
  return '"' + sName + '"';
}

QByteArray AttributeText(const CDeviceConfig& Config, DEV_CONFIG_PARAMS Param) {
  if (Param == DCP_DEVICE_NAME) return NameText(Config.Text(Param));
  if (Param > NUM_CONFIG_VALUES) return Config.Text(Param);
  const U32 Value = static_cast<U32>(Config.Value(Param));
  return Param == DCP_SPEED ? SpeedText(Value) : "0x" + QByteArray::number(Value, 16).toUpper();
}

I32 ParseSpeed(const QByteArray& sText) {
  if (sText == SPEED_AUTO) return VNODE_SPEED_AUTO;
  if (sText == SPEED_ADAPTIVE) return VNODE_SPEED_ADAPTIVE;
  bool bOk = false;
  const U32 KHz = sText.toUInt(&bOk, 0);
  return bOk ? static_cast<I32>(std::min<I64>(KHz * HZ_PER_KHZ, INT32_MAX)) : 0;
}

CONFIG_ENTRY MakeEntry(const XML_ATTRIBUTE& Row, const QByteArray& sText) {
  CONFIG_ENTRY Entry{Row.Param};
  if (Row.Param > NUM_CONFIG_VALUES) {
    Entry.sText = sText;
    if (Row.Param == DCP_DEVICE_NAME) Entry.sText.replace("\"", "");
    return Entry;
  }
  if (Row.Param == DCP_SPEED) {
    Entry.Value = ParseSpeed(sText);
    return Entry;
  }
  bool bOk = false;
  const U32 Value = sText.toUInt(&bOk, 0);
  Entry.Value = bOk ? static_cast<I32>(Value) : Row.Default;
  return Entry;
}

// The attribute's text in whichever child of the root has it first.
QByteArray FindAttribute(const rapidxml::xml_node<>* pRoot, const char* sName) {
  for (auto* pNode = pRoot->first_node(); pNode != nullptr; pNode = pNode->next_sibling()) {
    if (const auto* pAttr = pNode->first_attribute(sName)) {
      return QByteArray(pAttr->value(), static_cast<qsizetype>(pAttr->value_size())).trimmed();
    }
  }
  return QByteArray();
}

}  // namespace

QByteArray CDeviceConfig::ToXML() const {
  rapidxml::xml_document<> Document;
  auto* pRoot = Document.allocate_node(rapidxml::node_element, ROOT);
  Document.append_node(pRoot);
  rapidxml::xml_node<>* pElement = nullptr;
  for (const XML_ATTRIBUTE& Row : ATTRIBUTES) {
    if (pElement == nullptr || std::strcmp(pElement->name(), Row.sElement) != 0) {
      pElement = Document.allocate_node(rapidxml::node_element, Row.sElement);
      pRoot->append_node(pElement);
    }
    const QByteArray sText = AttributeText(*this, Row.Param);
    char* pText = Document.allocate_string(sText.constData(), static_cast<size_t>(sText.size()) + 1);
    pElement->append_attribute(Document.allocate_attribute(Row.sName, pText));
  }
  std::string sXML;
  rapidxml::print(std::back_inserter(sXML), Document, 0);
  return QByteArray::fromStdString(sXML);
}

bool ParseConfigXML(const QByteArray& sXML, QList<CONFIG_ENTRY>& Entries, QString& sError) {
  if (sXML.count('<') > MAX_TAGS) {
    sError = QStringLiteral("more than %1 tags").arg(MAX_TAGS);
    return false;
  }
  std::vector<char> Buffer(sXML.begin(), sXML.end());
  Buffer.push_back('\0');
  rapidxml::xml_document<> Document;
  try {
    Document.parse<0>(Buffer.data());
  } catch (const rapidxml::parse_error& Error) {
    const qsizetype Offset = Error.where<char>() - Buffer.data();
    sError = QStringLiteral("%1 at character %2").arg(QString::fromLatin1(Error.what())).arg(Offset);
    return false;
  }
  const auto* pRoot = Document.first_node();
  if (pRoot == nullptr) {
    sError = QStringLiteral("no root element");
    return false;
  }
  Entries.clear();
  for (const XML_ATTRIBUTE& Row : ATTRIBUTES) Entries.append(MakeEntry(Row, FindAttribute(pRoot, Row.sName)));
  return true;
}
