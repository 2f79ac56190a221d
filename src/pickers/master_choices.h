#pragma once

// What the lists of the master tables show: for each kind of list one function that reads the connection and
// says what is in it. docs/pickers.md tells tables, order, texts and data of each.
//
// A null or closed connection gives an empty list (with its blank entry) and the record store's result. A
// record that is retired (its marker begins with "__") is listed only while it is the current one, unless a
// function says otherwise. Nothing is selected when no entry is the current one; the blank entry never is.

#include <cstdint>
#include <string_view>
#include <vector>

#include "pickers/choice_list.h"
#include "platform/recordstore/kovadbcall.h"

namespace kova::pickers {

/// What a caller asks of a list.
struct Wanted {
  std::string_view current;  // code of the entry to select
  bool addBlank = false;     // an entry with no text, and zeros for data, comes first
};

/// A small code list of the category table; data: class code and code. Classes "0", "1" and "3" are cached.
ChoiceList CategoryChoices(CKovaDBSys* db, std::string_view classCode, const Wanted& wanted);

/// Category class 2, the code at the right end of the text; no data. A retired one is never listed.
ChoiceList PaymentMethodChoices(CKovaDBSys* db, const Wanted& wanted);

/// Every doctor; data: code. Cached.
ChoiceList DoctorChoices(CKovaDBSys* db, const Wanted& wanted);

/// The staff list; data: code. Retired staff is never listed.
ChoiceList StaffChoices(CKovaDBSys* db, const Wanted& wanted);

/// The items of all credit categories, category by category; data: category code and item code. The items of
/// a retired category count as retired.
ChoiceList CreditDataChoices(CKovaDBSys* db, std::string_view currentCategory, std::string_view currentItem);

/// The items of one credit category, which may be a retired one; data as above.
ChoiceList CreditItemChoices(CKovaDBSys* db, std::string_view category, std::string_view currentItem);

/// Credit categories; data: code. A retired one is also listed while it is `extraCode`. Cached.
ChoiceList CreditCategoryChoices(CKovaDBSys* db, const Wanted& wanted, std::string_view extraCode);

/// Conditions; data: code. Cached.
ChoiceList ConditionChoices(CKovaDBSys* db, const Wanted& wanted);

/// Categories of material items; data: code. A table without any record gets the category "0000" "その他"
/// first.
ChoiceList MaterialItemCategoryChoices(CKovaDBSys* db, const Wanted& wanted);

/// Recall groups; data: code.
ChoiceList RecallGroupChoices(CKovaDBSys* db, const Wanted& wanted);

struct IntroDoctorChoices {
  ChoiceList list;
  std::vector<tagINTRODR> doctors;  // the record of each entry but the blank one, in the same order
};

/// Introducing doctors of one kind (0, 1, 2), or of all kinds with the code in front (any other number);
/// data: code. Cached.
IntroDoctorChoices IntroducingDoctorChoices(CKovaDBSys* db, std::uint8_t kind, const Wanted& wanted);

/// The items of a free table, read through `table`, which is bound to the connection and closed again; data:
/// code. Codes are compared as numbers: "7" is "0007". An empty current code is none.
ChoiceList FreeTableChoices(CKovaDBSys* db, CCustomTblDB& table, std::string_view tableId,
                            const Wanted& wanted);

}  // namespace kova::pickers
