#include "device/vnode_library.h"

#include <cstdio>
#include <type_traits>

#include <QCoreApplication>
#include <QDir>

namespace {

constexpr char MISSING_TEXT[] = "The V-Node library is not loaded";

template <typename FUNC>
struct MISSING_FUNC;

// The answer of every function of a library that is not there: -1, zero, null or nothing.
template <typename RET, typename... ARGS>
struct MISSING_FUNC<RET (*)(ARGS...)> {
  static RET Call(ARGS...) {
    if constexpr (std::is_same_v<RET, int>)
      return -1;
    else if constexpr (std::is_same_v<RET, const char*>)
      return MISSING_TEXT;
    else if constexpr (!std::is_void_v<RET>)
      return RET{};
  }
};

int MissingExecCommand(const char*, char* acReply, int ReplySize) {
  if (acReply != nullptr && ReplySize > 0) std::snprintf(acReply, static_cast<size_t>(ReplySize), "%s", MISSING_TEXT);
  return -1;
}

}  // namespace

CVNodeLibrary::CVNodeLibrary() : Functions(MissingApi()) {}

VNODE_API CVNodeLibrary::MissingApi() {
  VNODE_API Api;
#define VNODE_SET_MISSING(Ret, Name, Args) Api.Name = &MISSING_FUNC<decltype(Api.Name)>::Call;
  VNODE_API_FUNCS(VNODE_SET_MISSING)
#undef VNODE_SET_MISSING
  Api.VNODEARM_ExecCommand = &MissingExecCommand;
  // Selecting an interface succeeds, so that a connect fails at the opening, which names the cause.
  Api.VNODEARM_SelectUSB = [](int) { return 0; };
  Api.VNODEARM_SelectIP = [](const char*, int) { return 0; };
  Api.VNODEARM_EMU_SelectByUSBSN = [](U32) { return 0; };
  return Api;
}

int CVNodeLibrary::Fail(const QString& sText) {
  sError = sText;
  Functions = MissingApi();
  bLoaded = false;
  return -1;
}

int CVNodeLibrary::Load(const QString& sFolder) {
  const QString sDir = sFolder.isEmpty() ? QCoreApplication::applicationDirPath() : sFolder;
  sPath = QDir::fromNativeSeparators(sDir) + QStringLiteral("/libvnode.so");
  Library.setFileName(sPath);
  if (!Library.load()) {
    return Fail(QStringLiteral("The V-Node library could not be loaded: %1").arg(Library.errorString()));
  }
  VNODE_API Loaded;
#define VNODE_RESOLVE(Ret, Name, Args)                                                                            \
  Loaded.Name = reinterpret_cast<decltype(Loaded.Name)>(Library.resolve(#Name));                                  \
  if (Loaded.Name == nullptr) {                                                                                   \
    return Fail(QStringLiteral("The V-Node library %1 lacks the function %2").arg(sPath, QStringLiteral(#Name))); \
  }
  VNODE_API_FUNCS(VNODE_RESOLVE)
#undef VNODE_RESOLVE
  Functions = Loaded;
  sError.clear();
  bLoaded = true;
  return 0;
}
