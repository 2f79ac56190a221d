#include "hosts/kovacall/postal_commands.h"

#include <cstddef>
#include <string>
#include <string_view>

#include "entry/kova_com_dlg.h"
#include "hosts/console/console.h"
#include "hosts/kovacall/declare.h"
#include "platform/os/files.h"
#include "platform/os/program.h"
#include "platform/text932/cp932.h"
#include "postal/address_import.h"
#include "postal/address_list.h"
#include "postal/address_lookup.h"
#include "postal/geo_import.h"

namespace kova::hosts {
namespace {

using os::FileOutcome;
using postal::CodeChange;

std::string Utf8(std::string_view text) { return ShowControls(text932::ToUtf8(text)); }

using Lookup = postal::Candidates (*)(os::Files&, std::string_view fileName, std::string_view text);

/// True, with the candidates in `reply`, when the exported operation would ask its user.
bool WouldAsk(Lookup lookup, const char* text, Reply& reply) {
  const postal::Candidates found =
      lookup(os::RealFiles(), postal::AddressFileName(os::ProgramFolder()), text);
  if (found.SureAnswer()) return false;
  for (std::size_t i = 0; i < found.list.size(); ++i) {
    const postal::Candidate& each = found.list[i];
    reply.outs.emplace_back(
        "candidates[" + std::to_string(i) + "]",
        each.postalCode.empty() ? Utf8(each.address) : Utf8(each.postalCode) + "\t" + Utf8(each.address));
  }
  return true;
}

CString SearchAddress(const char* postalCode, Reply* reply) {
  if (WouldAsk(&postal::AddressesOfCode, postalCode, *reply)) return CString();
  return CKovaComDlg::SearchAddressFormPost(nullptr, postalCode);
}

CString SearchPost(const char* address, Reply* reply) {
  if (WouldAsk(&postal::CodesOfAddress, address, *reply)) return CString();
  return CKovaComDlg::SearchPostFromAddress(nullptr, address);
}

/// A file's whole content; false when there is none. Throws UsageError when it cannot be read.
bool ReadFile(const std::string& argument, std::string& content) {
  const std::string name = TextArgument(AbsoluteName(argument), "the file");
  const FileOutcome outcome = os::RealFiles().Read(name, postal::kLargestAddressList, content);
  if (outcome == FileOutcome::kTooLarge) throw UsageError(ShowControls(argument) + " is too large");
  if (outcome != FileOutcome::kOk && outcome != FileOutcome::kNotThere)
    throw UsageError(ShowControls(argument) + " cannot be read");
  return outcome == FileOutcome::kOk;
}

postal::ImportOutcome ImportSource(const std::string& source, std::string& list) {
  std::string content;
  if (!ReadFile(source, content)) throw UsageError("there is no file " + ShowControls(source));
  const postal::ImportOutcome outcome = postal::AppendAddresses(content, list);
  if (outcome.faultyLine != 0)
    throw UsageError(ShowControls(source) + ": line " + std::to_string(outcome.faultyLine) +
                     " is of no list of Japan Post's; nothing was changed");
  if (outcome.entries == 0) throw UsageError(ShowControls(source) + " holds no line; nothing was changed");
  return outcome;
}

void PrintChanges(std::string_view kind, const std::vector<CodeChange>& changes) {
  constexpr std::size_t kShown = 100;
  Print(std::string(kind) + "=" + std::to_string(changes.size()) + "\n");
  for (std::size_t i = 0; i < changes.size() && i < kShown; ++i) {
    const CodeChange& each = changes[i];
    const std::string arrow = each.before.empty() || each.after.empty() ? "" : " -> ";
    Print("  " + Utf8(each.code) + " " + Utf8(each.before) + arrow + Utf8(each.after) + "\n");
  }
  if (changes.size() > kShown) Print("  ... and " + std::to_string(changes.size() - kShown) + " more\n");
}

void PrintChanges(const postal::ListChanges& changes) {
  PrintChanges("added", changes.added);
  PrintChanges("removed", changes.removed);
  PrintChanges("renamed", changes.renamed);
}

void ImportAddress(const std::vector<std::string>& arguments, Practice&) {
  if (arguments.size() < 2) throw UsageError("takes one or more sources, and the list to make of them");
  const std::string& target = arguments.back();
  std::string list, before;
  std::size_t entries = 0, unstorable = 0;
  for (std::size_t i = 0; i + 1 < arguments.size(); ++i) {
    const postal::ImportOutcome outcome = ImportSource(arguments[i], list);
    entries += outcome.entries;
    unstorable += outcome.unstorableLines;
  }
  const bool wasThere = ReadFile(target, before);
  const std::string name = TextArgument(AbsoluteName(target), "the list");
  if (os::RealFiles().Replace(name, list) != FileOutcome::kOk)
    throw UsageError(ShowControls(target) + " cannot be written; it is as it was");
  Print("entries=" + std::to_string(entries) + "\n");
  if (unstorable > 0)
    Print("lines with characters that cannot be stored=" + std::to_string(unstorable) + "\n");
  if (!wasThere) return;
  PrintChanges(postal::CompareLists(before, list));
}

void ImportGeo(const std::vector<std::string>& arguments, Practice&) {
  if (arguments.size() != 3)
    throw UsageError("takes the table of towns, the postal address list, and the list to make");
  std::string towns, addresses, before, made;
  if (!ReadFile(arguments[0], towns)) throw UsageError("there is no file " + ShowControls(arguments[0]));
  if (!ReadFile(arguments[1], addresses)) throw UsageError("there is no file " + ShowControls(arguments[1]));
  const postal::GeoOutcome outcome = postal::MakeCoordinates(towns, addresses, made);
  if (outcome.faultyLine != 0)
    throw UsageError(ShowControls(arguments[0]) + ": line " + std::to_string(outcome.faultyLine) +
                     " is of no table of towns with coordinates; nothing was changed");
  if (made.empty()) throw UsageError("no code of the list has a place in the table; nothing was changed");
  const bool wasThere = ReadFile(arguments[2], before);
  const std::string name = TextArgument(AbsoluteName(arguments[2]), "the list");
  if (os::RealFiles().Replace(name, made) != FileOutcome::kOk)
    throw UsageError(ShowControls(arguments[2]) + " cannot be written; it is as it was");
  Print("towns=" + std::to_string(outcome.towns) + "\ncities=" + std::to_string(outcome.cities) +
        "\nnowhere=" + std::to_string(outcome.nowhere) + "\n");
  if (wasThere) PrintChanges(postal::CompareCoordinates(before, made));
}

}  // namespace

const std::vector<Operation>& PostalOperations() {
  static const std::vector<Operation> operations = {
      Declare("SearchAddressFormPost", {"postalCode"}, &SearchAddress),
      Declare("SearchPostFromAddress", {"address"}, &SearchPost),
  };
  return operations;
}

const std::vector<TableCommand>& PostalCommands() {
  static const std::vector<TableCommand> commands = {
      {"import-address", "SOURCE... LIST",
       "makes the postal address list LIST (Address.csv) of Japan Post's published files, those of towns and "
       "of "
       "large offices, and replaces it whole or not at all; prints its number of entries and, where there "
       "was a "
       "list, which codes are added, removed and renamed",
       &ImportAddress},
      {"import-geo", "TOWNS ADDRESSES LIST",
       "makes the map's coordinate list LIST (PostGeo.csv) of a table of towns with coordinates and the "
       "postal address "
       "list, and replaces it whole or not at all; prints how many codes lie at their town, in their city, "
       "and nowhere "
       "and, where there was a list, which codes are added, removed and renamed",
       &ImportGeo},
  };
  return commands;
}

}  // namespace kova::hosts
