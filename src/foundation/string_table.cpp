#include "foundation/string_table.h"

#include <algorithm>

namespace kova::foundation {
namespace {

struct Entry {
  int id;
  std::string_view text;
};

constexpr Entry kEntries[] = {
    {kTextAdministrator, "管理者"},
    {kTextUser, "ユーザー"},
    {kTextUnknownPrivilege, "不明"},
    {kTextCannotConnect,
     "指定されたデータベースフォルダに接続できませんでした。\n"
     "正しいデータベースフォルダを指定して、または指定したフォルダに空のデータベースを作成してください。"},
    {kTextChooseDatabaseFolder, "データベースフォルダを選択して下さい"},
    {kTextConnected, "データベースへの接続が成功しました。"},
    {kTextAddress, "住所"},
    {kTextPostalCode, "郵便番号"},
};
static_assert(std::ranges::adjacent_find(kEntries, std::ranges::greater_equal(), &Entry::id) ==
                  std::end(kEntries),
              "sorted by number, each number once");

}  // namespace

std::string_view StringTableText(int id) {
  const Entry* entry = std::ranges::lower_bound(kEntries, id, {}, &Entry::id);
  return entry != std::end(kEntries) && entry->id == id ? entry->text : std::string_view();
}

}  // namespace kova::foundation
