#include "hosts/reception/patient_columns.h"

#include <afxwin.h>

#include <set>

namespace kova::hosts {
namespace {

CString Key(const char* name, std::size_t position) {
  CString key;
  key.Format("%s%02u", name, static_cast<unsigned>(position));
  return key;
}

int Read(const char* section, const CString& key, int otherwise) {
  return static_cast<int>(AfxGetApp()->GetProfileInt(section, key, otherwise));
}

}  // namespace

std::vector<ShownColumn> ReadColumns(const char* section, const std::vector<ShownColumn>& normally) {
  if (AfxGetApp()->GetProfileString(section, Key("ListWidth", 0), "").IsEmpty()) return normally;
  std::vector<ShownColumn> columns;
  std::set<int> left;
  for (const ShownColumn& each : normally) left.insert(each.column);
  for (std::size_t i = 0; i < normally.size(); ++i) {
    const int column = Read(section, Key("ListHeaderID", i), static_cast<int>(i));
    // Somebody may have edited the profile: no column twice, and none that is not there.
    if (left.erase(column) != 0) columns.push_back({column, Read(section, Key("ListWidth", i), -100)});
  }
  for (const int column : left) columns.push_back({column, -100});
  return columns;
}

void WriteColumns(const char* section, const std::vector<ShownColumn>& columns) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    AfxGetApp()->WriteProfileInt(section, Key("ListHeaderID", i), columns[i].column);
    AfxGetApp()->WriteProfileInt(section, Key("ListWidth", i), columns[i].width);
  }
}

bool IsGuardianShown() { return Read("PatientInfo", "Parent", 1) != 0; }

}  // namespace kova::hosts
