// The files of the templates folder with any bytes in them: a template, the index, the tree.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "mail/template_store.h"
#include "mail/template_tree.h"
#include "platform/os/testing/fake_files.h"

namespace {

using namespace kova::mail;
using kova::os::FileOutcome;

void Require(bool holds) {
  if (!holds) std::abort();
}

// What can be read is written and read again as it was.
void TemplateComesBack(TemplateStore& store) {
  MailTemplate read, again;
  if (store.Read(1, read) != FileOutcome::kOk) return;
  Require(store.Write(1, read) == FileOutcome::kOk && store.Read(1, again) == FileOutcome::kOk);
  Require(read == again);
}

// Every template is in the tree once, and the tree that is saved is the one that is read.
void TreeIsWhole(std::string_view file) {
  const std::vector<int> existing{0, 1, 2, 3, 4, 5, 12, 2147483647};
  TemplateTree tree(file, existing);
  std::vector<int> walk(tree.Children(std::nullopt));
  for (std::size_t i = 0; i < walk.size(); ++i) {
    Require(walk.size() <= existing.size());
    for (const int child : tree.Children(walk[i])) walk.push_back(child);
  }
  Require(walk.size() == existing.size());
  const std::string saved = tree.FileText();
  Require(TemplateTree(saved, existing).FileText() == saved);
  for (const int number : walk) (void)tree.Move(number, walk.front(), std::nullopt);
  Require(TemplateTree(tree.FileText(), existing).FileText() == tree.FileText());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  kova::os::testing::FakeFiles files;
  TemplateStore store(files, "T");
  files.contents["T\\0001.$mt"] = input;
  files.contents["T\\$mt.index"] = input;
  TemplateComesBack(store);
  const int next = store.NextNumber();
  Require(next == 0 || store.NextNumber() == next + 1 || next == 2147483647 || next == -1);
  TreeIsWhole(input);
  return 0;
}
