//===- PlanFile.cpp - Plans of many functions, as a file ------------------===//

#include "plugin/plan/PlanFile.h"
#include "llvm/ADT/STLExtras.h"
#include "llvm/ADT/ScopeExit.h"
#include "llvm/ADT/StringExtras.h"
#include "llvm/Support/FileSystem.h"
#include "llvm/Support/MemoryBuffer.h"
#include "llvm/Support/SourceMgr.h"
#include "llvm/Support/YAMLTraits.h"
#include "llvm/Support/raw_ostream.h"
#include <map>
#include <mutex>
#include <tuple>

using namespace llvm;
using namespace llvm::inlinerecursion;

static constexpr unsigned FileVersion = 1;

static constexpr StringLiteral PlaceNames[] = {"early", "late", "link",
                                               "link-late"};

StringRef llvm::inlinerecursion::getPlaceName(Place Where) {
  return PlaceNames[unsigned(Where)];
}

//===----------------------------------------------------------------------===//
// What stands in a file
//===----------------------------------------------------------------------===//

namespace {
/// Texts as they stand there: what is wrong in one entry is no reason to read
/// no further.
struct RawEntry {
  std::string Name, Plan, File, Where, Body, Reason;
  unsigned Line = 0;
};

struct RawDocument {
  unsigned Version = FileVersion;
  std::string Module;
  std::vector<RawEntry> Functions;
};

/// What is needed to tell where something stands.
struct FileContext {
  StringRef Text, Name;
  std::vector<std::string> &Complaints;
  /// LLVM tells several things about one mistake; the first is the one.
  bool HasFailed = false;

  std::string describe(unsigned Line) const {
    return (Name + ":" + Twine(Line)).str();
  }
  void complain(unsigned Line, const Twine &Message) {
    Complaints.push_back((describe(Line) + ": " + Message).str());
  }
};
} // namespace

LLVM_YAML_IS_SEQUENCE_VECTOR(RawEntry)
LLVM_YAML_IS_DOCUMENT_LIST_VECTOR(RawDocument)

template <> struct yaml::MappingTraits<RawEntry> {
  static void mapping(IO &IO, RawEntry &Entry) {
    if (!IO.outputting()) {
      const auto &Context = *static_cast<FileContext *>(IO.getContext());
      const yaml::Node *Node = static_cast<Input &>(IO).getCurrentNode();
      const char *Begin = Node->getSourceRange().Start.getPointer();
      Entry.Line =
          1 + Context.Text.take_front(Begin - Context.Text.data()).count('\n');
    }
    IO.mapOptional("name", Entry.Name, std::string());
    IO.mapOptional("plan", Entry.Plan, std::string());
    IO.mapOptional("file", Entry.File, std::string());
    IO.mapOptional("where", Entry.Where, std::string());
    IO.mapOptional("body", Entry.Body, std::string());
    IO.mapOptional("reason", Entry.Reason, std::string());
  }
};

template <> struct yaml::MappingTraits<RawDocument> {
  static void mapping(IO &IO, RawDocument &Document) {
    IO.mapRequired("version", Document.Version);
    if (Document.Version != FileVersion)
      return IO.setError(
          "version " + Twine(Document.Version) +
          " is not known; write 'version: " + Twine(FileVersion) + "'");
    IO.mapOptional("module", Document.Module, std::string());
    IO.mapOptional("functions", Document.Functions);
  }
};

//===----------------------------------------------------------------------===//
// Reading
//===----------------------------------------------------------------------===//

static void handleDiagnostic(const SMDiagnostic &Message, void *Opaque) {
  auto &Context = *static_cast<FileContext *>(Opaque);
  if (std::exchange(Context.HasFailed, true))
    return;
  const int Line = Message.getLineNo();
  Context.complain(Line > 0 ? Line : 1,
                   Message.getMessage() +
                       "; the file is not followed, see the chapter on plan "
                       "files for what it may hold");
}

/// What \p Raw says; none, and a complaint in \p Context, if it makes no sense.
static std::optional<PlanEntry>
understand(const RawEntry &Raw, StringRef Module, FileContext &Context) {
  PlanEntry Entry;
  Entry.Name = Raw.Name;
  Entry.File = Raw.File.empty() ? Module.str() : Raw.File;
  Entry.Body = Raw.Body;
  Entry.Reason = Raw.Reason;
  Entry.Origin = Context.describe(Raw.Line);
  if (Raw.Name.empty()) {
    Context.complain(Raw.Line, "an entry without a name; write 'name:' and "
                               "the function");
    return std::nullopt;
  }
  if (!Raw.Where.empty()) {
    const auto *Found = find(PlaceNames, StringRef(Raw.Where));
    if (Found == std::end(PlaceNames)) {
      Context.complain(Raw.Line, "'" + Raw.Name + "': unknown place '" +
                                     Raw.Where + "'; write one of " +
                                     join(ArrayRef(PlaceNames), ", "));
      return std::nullopt;
    }
    Entry.Where = Place(Found - std::begin(PlaceNames));
  }
  Expected<PlanSpec> Plan = PlanSpec::parse(Raw.Plan);
  if (!Plan) {
    Context.complain(Raw.Line,
                     "'" + Raw.Name + "': " + toString(Plan.takeError()));
    return std::nullopt;
  }
  Entry.Plan = std::move(*Plan);
  return Entry;
}

std::vector<PlanDocument>
llvm::inlinerecursion::readPlans(StringRef Text, StringRef Name,
                                 std::vector<std::string> &Complaints) {
  FileContext Context = {Text, Name, Complaints};
  std::vector<RawDocument> Raw;
  yaml::Input In(MemoryBufferRef(Text, Name), &Context, handleDiagnostic,
                 &Context);
  In >> Raw;
  std::vector<PlanDocument> Documents;
  if (In.error())
    return Documents;

  using Key = std::tuple<std::string, std::string, Place>;
  std::map<Key, std::string> Seen;
  for (const RawDocument &Document : Raw) {
    PlanDocument &Read = Documents.emplace_back();
    Read.Module = Document.Module;
    for (const RawEntry &Function : Document.Functions) {
      std::optional<PlanEntry> Entry =
          understand(Function, Document.Module, Context);
      if (!Entry)
        continue;
      const auto [Other, IsNew] = Seen.try_emplace(
          Key(Entry->Name, Entry->File, Entry->Where), Entry->Origin);
      if (IsNew)
        Read.Functions.push_back(std::move(*Entry));
      else
        Context.complain(Function.Line,
                         "'" + Function.Name + "' has an entry already, at " +
                             Other->second + "; remove one of them");
    }
  }
  return Documents;
}

//===----------------------------------------------------------------------===//
// Writing
//===----------------------------------------------------------------------===//

std::string
llvm::inlinerecursion::printPlans(const std::vector<PlanDocument> &Documents) {
  std::vector<RawDocument> Raw;
  for (const PlanDocument &Document : Documents) {
    RawDocument &Written = Raw.emplace_back();
    Written.Module = Document.Module;
    for (const PlanEntry &Entry : Document.Functions)
      Written.Functions.push_back(
          {Entry.Name, Entry.Plan.str(),
           Entry.File == Document.Module ? "" : Entry.File,
           Entry.Where == Place::Early ? "" : getPlaceName(Entry.Where).str(),
           Entry.Body, Entry.Reason});
  }
  std::string Text;
  raw_string_ostream OS(Text);
  // No line is broken: one entry is found by one search for its text.
  yaml::Output Out(OS, /*Ctxt=*/nullptr, /*WrapColumn=*/0);
  Out << Raw;
  return OS.str();
}

/// Puts what \p New says into \p Old, which is in order.
static void merge(std::vector<PlanDocument> &Old, PlanDocument New) {
  auto ByModule = [](const PlanDocument &Document, StringRef Module) {
    return StringRef(Document.Module) < Module;
  };
  auto It = lower_bound(Old, StringRef(New.Module), ByModule);
  if (It == Old.end() || It->Module != New.Module) {
    It = Old.insert(It, PlanDocument());
    It->Module = New.Module;
  }
  auto GetKey = [](const PlanEntry &Entry) {
    return std::tie(Entry.Name, Entry.File, Entry.Where);
  };
  std::vector<PlanEntry> &Entries = It->Functions;
  erase_if(Entries, [&](const PlanEntry &Entry) {
    return any_of(New.Functions, [&](const PlanEntry &Newer) {
      return GetKey(Newer) == GetKey(Entry);
    });
  });
  append_range(Entries, std::move(New.Functions));
  sort(Entries, [&](const PlanEntry &L, const PlanEntry &R) {
    return GetKey(L) < GetKey(R);
  });
}

static Error makeFileError(StringRef Path, std::error_code Code) {
  return createStringError(Code, "%s: %s", Path.str().c_str(),
                           Code.message().c_str());
}

Error llvm::inlinerecursion::addToPlanFile(StringRef Path, PlanDocument New) {
  // A lock on a file keeps other processes out, but not other threads.
  static std::mutex Mutex;
  std::lock_guard<std::mutex> Alone(Mutex);
  int FD;
  if (std::error_code Code = sys::fs::openFileForReadWrite(
          Path, FD, sys::fs::CD_OpenAlways, sys::fs::OF_None))
    return makeFileError(Path, Code);
  raw_fd_ostream OS(FD, /*shouldClose=*/true);
  if (std::error_code Code = sys::fs::lockFile(FD))
    return makeFileError(Path, Code);
  auto Unlock = make_scope_exit([FD] { sys::fs::unlockFile(FD); });
  auto Text = MemoryBuffer::getOpenFile(sys::fs::convertFDToNativeFile(FD),
                                        Path, /*FileSize=*/-1,
                                        /*RequiresNullTerminator=*/true,
                                        /*IsVolatile=*/true);
  if (!Text)
    return makeFileError(Path, Text.getError());

  std::vector<std::string> Complaints;
  std::vector<PlanDocument> Documents =
      readPlans((*Text)->getBuffer(), Path, Complaints);
  if (!Complaints.empty())
    return createStringError(inconvertibleErrorCode(),
                             "%s; remove the file, it is written anew",
                             Complaints.front().c_str());
  sort(Documents, [](const PlanDocument &L, const PlanDocument &R) {
    return L.Module < R.Module;
  });
  merge(Documents, std::move(New));
  if (std::error_code Code = sys::fs::resize_file(FD, 0))
    return makeFileError(Path, Code);
  OS.seek(0);
  OS << printPlans(Documents);
  OS.flush();
  if (OS.has_error()) {
    const std::error_code Code = OS.error();
    OS.clear_error();
    return makeFileError(Path, Code);
  }
  return Error::success();
}
