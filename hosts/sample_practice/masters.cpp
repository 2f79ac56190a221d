#include "hosts/sample_practice/masters.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "hosts/sample_practice/batch.h"

namespace kova::sample {
namespace {

using store::PutText;

struct Master {
  const char* code;
  const char* name;
  const char* marker = "";
};

/// One of the tables that hold a code, a name, an order and a marker and nothing else.
template <typename Table>
void WriteList(CKovaDBSys& db, std::span<const Master> masters) {
  Bound<Table> table(db);
  for (const Master& each : masters) {
    table->record = {};
    PutText(table->record.code, each.code);
    PutText(table->record.sortOrder, each.code);
    PutText(table->record.name, each.name);
    PutText(table->record.marker, each.marker);
    Check(table->Insert(), "a master table");
  }
}

void WriteCategories(CKovaDBSys& db, int units) {
  struct Category {
    const char* classCode;
    Master master;
  };
  static const Category kCategories[] = {
      {"0", {"01", "初診"}},
      {"0", {"02", "再診"}},
      {"0", {"03", "メインテナンス"}},
      {"0", {"04", "急患"}},
      {"0", {"05", "相談"}},
      {"0", {"06", "訪問"}},
      {"0", {"90", "旧：電話再診", "__"}},
      {"2", {"01", "現金"}},
      {"2", {"02", "クレジットカード"}},
      {"2", {"03", "電子マネー"}},
      {"2", {"04", "振込"}},
      {"2", {"90", "旧：小切手", "__"}},
      {"3", {"01", "社保"}},
      {"3", {"02", "国保"}},
      {"3", {"03", "後期高齢者"}},
      {"3", {"04", "公費"}},
      {"3", {"05", "自費"}},
      {"5", {"10", "受付済"}},
      {"5", {"20", "診療中"}},
      {"5", {"30", "会計待ち"}},
      {"5", {"90", "旧：検査", "__"}},
      {"6", {"01", "釣銭準備金"}},
      {"6", {"02", "その他入金"}},
      {"7", {"01", "銀行預入"}},
      {"7", {"02", "その他出金"}},
      {"E", {"01", "紹介"}},
      {"E", {"02", "看板"}},
      {"E", {"03", "ホームページ"}},
  };
  Bound<CCategoryDB> table(db);
  const auto insert = [&](const char* classCode, const Master& master) {
    table->record = {};
    PutText(table->record.classCode, classCode);
    PutText(table->record.code, master.code);
    PutText(table->record.sortOrder, master.code);
    PutText(table->record.name, master.name);
    PutText(table->record.marker, master.marker);
    Check(table->Insert(), "the categories");
  };
  for (const Category& each : kCategories) insert(each.classCode, each.master);
  for (int unit = 1; unit <= units; ++unit) {
    char code[8];
    char name[24];
    std::snprintf(code, sizeof code, "%02d", unit % 100);
    std::snprintf(name, sizeof name, "ユニット%d", unit);
    insert("1", {code, name});
  }
}

void WritePeople(CKovaDBSys& db) {
  struct Person {
    const char* name;
    const char* reading;
  };
  static const Person kDoctorNames[kDoctors] = {{"表　修一", "ｵﾓﾃ ｼｭｳｲﾁ"},
                                                {"能見　香織", "ﾉｳﾐ ｶｵﾘ"},
                                                {"髙﨑　亮", "ﾀｶｻｷ ﾘｮｳ"},
                                                {"曽根　みどり", "ｿﾈ ﾐﾄﾞﾘ"},
                                                {"十河　武", "ｿｺﾞｳ ﾀｹｼ"}};
  static const Person kStaffNames[kStaff] = {
      {"青木　由紀", "ｱｵｷ ﾕｷ"},  {"石田　早苗", "ｲｼﾀﾞ ｻﾅｴ"}, {"上野　舞", "ｳｴﾉ ﾏｲ"},
      {"江口　里奈", "ｴｸﾞﾁ ﾘﾅ"}, {"大野　典子", "ｵｵﾉ ﾉﾘｺ"},  {"加納　瞳", "ｶﾉｳ ﾋﾄﾐ"},
      {"北村　楓", "ｷﾀﾑﾗ ｶｴﾃﾞ"}, {"久保　遥", "ｸﾎﾞ ﾊﾙｶ"},    {"小池　茜", "ｺｲｹ ｱｶﾈ"},
      {"佐野　真理", "ｻﾉ ﾏﾘ"},   {"関　綾香", "ｾｷ ｱﾔｶ"},     {"予備　端末", "ﾖﾋﾞ ﾀﾝﾏﾂ"}};
  Bound<CDoctorDB> doctors(db);
  Bound<CStaffDB> staff(db);
  Bound<CCustomTblDB> staffList(db);
  char code[16];
  for (int i = 0; i < kDoctors; ++i) {
    doctors->record = {};
    std::snprintf(code, sizeof code, "%02d", i + 1);
    PutText(doctors->record.code, code);
    PutText(doctors->record.sortOrder, code);
    PutText(doctors->record.name, kDoctorNames[i].name);
    PutText(doctors->record.reading, kDoctorNames[i].reading);
    if (i == kDoctors - 1) PutText(doctors->record.marker, "__");
    Check(doctors->Insert(), "the doctors");
  }
  for (int i = 0; i < kStaff; ++i) {
    staff->record = {};
    std::snprintf(code, sizeof code, "S%03d", i + 1);
    PutText(staff->record.staffId, code);
    PutText(staff->record.name, kStaffNames[i].name);
    PutText(staff->record.reading, kStaffNames[i].reading);
    staff->record.privilege = i == 0 ? 1 : 0;
    Check(staff->Insert(), "the staff");
    staffList->record = {};
    PutText(staffList->record.tableId, "AA");
    PutText(staffList->record.code, code);
    PutText(staffList->record.sortOrder, code);
    PutText(staffList->record.name, kStaffNames[i].name);
    Check(staffList->Insert(), "the staff list");
  }
}

void WriteFreeTables(CKovaDBSys& db) {
  struct Entry {
    const char* table;
    Master master;
  };
  static const Entry kEntries[] = {
      {"00", {"01", "紹介カード"}}, {"00", {"02", "ホームページ"}}, {"00", {"03", "看板"}},
      {"01", {"01", "朝"}},         {"01", {"02", "昼"}},           {"01", {"03", "夕方"}},
      {"02", {"01", "車"}},         {"02", {"02", "電車・バス"}},   {"02", {"03", "徒歩"}},
  };
  Bound<CCustomTblDB> table(db);
  for (const Entry& each : kEntries) {
    table->record = {};
    PutText(table->record.tableId, each.table);
    PutText(table->record.code, each.master.code);
    PutText(table->record.sortOrder, each.master.code);
    PutText(table->record.name, each.master.name);
    Check(table->Insert(), "the free tables");
  }
}

void WriteFees(CKovaDBSys& db) {
  Bound<CCreditCategoryDB> categories(db);
  for (const FeeCategory& each : FeeCategories()) {
    categories->record = {};
    PutText(categories->record.code, each.code);
    PutText(categories->record.sortOrder, each.code);
    PutText(categories->record.name, each.name);
    PutText(categories->record.taxType, each.taxType);
    PutText(categories->record.receiptCategoryCode, each.receiptCategory);
    categories->record.reducedRate = each.reducedRate ? 1 : 0;
    Check(categories->Insert(), "the credit categories");
  }
  Bound<CCreditItemDB> items(db);
  Bound<CCreditItemAmountDB> amounts(db);
  for (const auto& list : {FeeItems(), InsuredItems()}) {
    for (const FeeItem& each : list) {
      items->record = {};
      PutText(items->record.categoryCode, each.category);
      PutText(items->record.code, each.code);
      PutText(items->record.sortOrder, each.code);
      PutText(items->record.name, each.name);
      items->record.reducedRate = each.reducedRate ? 1 : 0;
      items->record.insuranceItem = std::string(each.category) == kInsuredCategory ? 1 : 0;
      items->record.unitPrice = each.price;
      Check(items->Insert(), "the credit items");
      amounts->record = {};
      PutText(amounts->record.categoryCode, each.category);
      PutText(amounts->record.itemCode, each.code);
      PutText(amounts->record.fromDate, "20191001");
      amounts->record.unitPrice = each.price;
      Check(amounts->Insert(), "the prices");
    }
  }
}

void WriteOwner(CKovaDBSys& db) {
  Bound<COwnerDB> owner(db);
  PutText(owner->record.code, "0001");
  PutText(owner->record.name, "表　修一");
  PutText(owner->record.clinicName, "表町みなと歯科クリニック");
  PutText(owner->record.address, "東京都千代田区神田駿河台１丁目２番３号　十河ビル２階");
  PutText(owner->record.postalCode, "101-0062");
  PutText(owner->record.phone, "0900-00-1234");
  PutText(owner->record.registrationNumber, "T0000000000000");
  Check(owner->Insert(), "the owner");
}

void WriteTreatments(CKovaDBSys& db) {
  Bound<CTreatmentItemDB> items(db);
  Bound<CIntroDrDB> doctors(db);
  int number = 0;
  for (const FeeItem& each : InsuredItems()) {
    items->record = {};
    PutText(items->record.categoryCode, number % 2 == 0 ? "01" : "02");
    PutText(items->record.code, each.code);
    PutText(items->record.sortOrder, each.code);
    PutText(items->record.name, each.name);
    items->record.points = each.price;
    Check(items->Insert(), "the treatments");
    ++number;
  }
  static const Master kIntroducing[] = {
      {"001", "港　浩一"}, {"002", "能代　恵"}, {"003", "表　健二"}, {"004", "西ノ宮　学"}};
  for (const Master& each : kIntroducing) {
    doctors->record = {};
    PutText(doctors->record.kind, each.code[2] == '3' ? "1" : "0");
    PutText(doctors->record.code, each.code);
    PutText(doctors->record.sortOrder, each.code);
    PutText(doctors->record.name, each.name);
    PutText(doctors->record.hospital, "みなと総合病院");
    PutText(doctors->record.phone, "0900-00-5678");
    Check(doctors->Insert(), "the introducing doctors");
  }
}

void WriteLists(CKovaDBSys& db) {
  static const Master kReasonNames[kReasons] = {
      {"01", "痛み"},     {"02", "詰め物が取れた"}, {"03", "定期検診"}, {"04", "歯ぐきの腫れ"},
      {"05", "審美相談"}, {"06", "入れ歯"},         {"07", "矯正"},     {"08", "その他"}};
  static const Master kWays[] = {{"01", "電話"}, {"02", "窓口"}, {"03", "インターネット"}};
  static const Master kRecallGroups[] = {
      {"01", "３か月"}, {"02", "６か月"}, {"03", "１年"}, {"90", "旧：随時", "__"}};
  static const Master kReceiptCategories[] = {{"001", "初・再診料"}, {"002", "医学管理等"},
                                              {"003", "処置"},       {"004", "自費診療"},
                                              {"005", "物販"},       {"006", "文書料"}};
  static const Master kConditions[] = {{"01", "良好"}, {"02", "経過観察"}, {"03", "要注意"}};
  static const Master kTreatmentCategories[] = {{"01", "保存"}, {"02", "歯周"}, {"03", "補綴"}};
  static const Master kCaseCategories[] = {{"01", "一般"}, {"02", "矯正"}, {"03", "インプラント"}};
  static const Master kMaterials[] = {
      {"0001", "コンポジットレジン"}, {"0002", "印象材"}, {"0003", "セメント"}};
  static const Master kMaterialCategories[] = {{"0000", "その他"}, {"0001", "充填"}};
  WriteList<CResReasonDB>(db, kReasonNames);
  WriteList<CReservationWayDB>(db, kWays);
  WriteList<CRecallGroupDB>(db, kRecallGroups);
  WriteList<CReceptCategoryDB>(db, kReceiptCategories);
  WriteList<CConditionDB>(db, kConditions);
  WriteList<CTreatmentCategoryDB>(db, kTreatmentCategories);
  WriteList<CCaseCategoryTable>(db, kCaseCategories);
  WriteList<CMaterialDB>(db, kMaterials);
  WriteList<CMaterialItemCateDB>(db, kMaterialCategories);
}

}  // namespace

std::span<const FeeCategory> FeeCategories() {
  static const FeeCategory kCategories[] = {
      {"01", "自費診療", false, "2", "004"}, {"02", "物販", false, "", "005"},
      {"03", "保険診療", false, "1", "003"}, {"04", "食品", true, "", "005"},
      {"05", "文書料", false, "2", "006"},   {"06", "検診（非課税）", false, "1", "001"},
  };
  return kCategories;
}

std::span<const FeeItem> FeeItems() {
  static const FeeItem kItems[] = {
      {"01", "001", "ホワイトニング", 22000, false},
      {"01", "002", "クリーニング（自費）", 5500, false},
      {"01", "003", "セラミック冠", 98000, false},
      {"01", "004", "マウスピース", 16500, false},
      {"01", "005", "矯正相談", 3300, false},
      {"02", "001", "歯ブラシ", 330, false},
      {"02", "002", "歯間ブラシ", 480, false},
      {"02", "003", "フッ素配合歯みがき", 1080, false},
      {"02", "004", "キシリトールタブレット", 1080, true},
      {"02", "005", "舌ブラシ", 645, false},
      {"04", "001", "キシリトールガム", 777, false},
      {"04", "002", "飲むヨーグルト", 158, false},
      {"05", "001", "診断書", 3000, false},
      {"05", "002", "証明書（英文）", 5005, false},
      {"06", "001", "妊婦歯科検診", 2500, false},
      {"06", "002", "企業検診", 4200, false},
  };
  return kItems;
}

std::span<const FeeItem> InsuredItems() {
  static const FeeItem kItems[] = {
      {"03", "001", "再診", 58, false},         {"03", "002", "歯科疾患管理", 100, false},
      {"03", "003", "スケーリング", 72, false}, {"03", "004", "充填", 234, false},
      {"03", "005", "抜歯", 265, false},        {"03", "006", "エックス線", 402, false},
  };
  return kItems;
}

const FeeCategory& CategoryOf(const FeeItem& item) {
  for (const FeeCategory& each : FeeCategories()) {
    if (std::string(each.code) == item.category) return each;
  }
  std::abort();  // every item of the lists has its category in the list
}

void WriteMasters(CKovaDBSys& db, int units) {
  Bound<COwnerDB> any(db);
  Batch batch(any.table);
  WriteCategories(db, units);
  WritePeople(db);
  WriteFreeTables(db);
  WriteFees(db);
  WriteOwner(db);
  WriteTreatments(db);
  WriteLists(db);
  batch.Finish();
}

}  // namespace kova::sample
