// Exported operations as a host calls them. operations_bench FOLDER: an empty folder of its own on the disk
// to measure.

#include <afxwin.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "bench/paired.h"
#include "bench/raw_table.h"
#include "entry/kova_sub_tools.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/kovadbcall.h"
#include "platform/recordstore/table.h"
#include "reservations/fee_request.h"

namespace kova::bench {
namespace {

using store::PutText;
using store::On;

// A settings file of some 300 lines with five tax periods; the date asked for lies in the last.
void WriteSettings(const std::string& file) {
  std::ofstream out(file, std::ios::binary);
  out << "[GLOBAL]\r\nConsumptionTax=1\r\nCalculationTax=1\r\n";
  for (int i = 0; i < 130; ++i) out << "Setting" << i << "=value of setting " << i << "\r\n";
  out << "[KOVACOM]\r\n";
  for (int i = 0; i < 130; ++i) out << "Column" << i << "=" << i << "\r\n";
  out << "[MENTE]\r\nTaxCount=5\r\n";
  const char* periods[][3] = {{"19890401", "19970331", "3"},
                              {"19970401", "20140331", "5"},
                              {"20140401", "20190930", "8"},
                              {"20191001", "20231231", "10"},
                              {"20240101", "99991231", "10"}};
  for (int i = 0; i < 5; ++i) {
    const std::string number = "0" + std::to_string(i + 1);
    out << "TaxFrm" << number << "=" << periods[i][0] << "\r\nTaxTo" << number << "=" << periods[i][1]
        << "\r\nTaxRate" << number << "=" << periods[i][2] << "\r\nTaxRate2" << number << "="
        << (i > 2 ? 8 : 0) << "\r\nTaxCont" << number << "=\r\n";
  }
}

void TaxRate() {
  constexpr int kCalls = 200;
  // The baseline asks for each key that the answer needs by itself, which opens, reads and parses the file
  // each time.
  const auto readKey = [](const std::string& section, const std::string& key) {
    return std::string(CKovaSubTools::GetGlobalSettingString(section.c_str(), key.c_str(), ""));
  };
  const auto rateByKey = [&](const std::string& date) {
    (void)readKey("GLOBAL", "ConsumptionTaxCont2");
    const int count = std::atoi(readKey("MENTE", "TaxCount").c_str());
    for (int i = 1; i <= count; ++i) {
      const std::string number = "0" + std::to_string(i);
      if (readKey("MENTE", "TaxFrm" + number) <= date && readKey("MENTE", "TaxTo" + number) >= date) {
        return std::atoi(readKey("MENTE", "TaxRate" + number).c_str()) / 100.0;
      }
    }
    return 0.0;
  };
  Compare(
      "GetTaxRate, five periods, 300 lines", "<= 0.125", 41, kCalls,
      [&](int) {
        for (int i = 0; i < kCalls; ++i)
          Check(CKovaSubTools::GetTaxRate("20261122", "", 0) == 0.1, "GetTaxRate");
      },
      [&](int) {
        for (int i = 0; i < kCalls; ++i) Check(rateByKey("20261122") == 0.1, "rate by key");
      });
}

void PutMasters(CKovaDBSys& db) {
  On<CCreditCategoryDB> category(db);
  On<CCreditItemDB> item(db);
  PutText(category.record.code, "01");
  PutText(category.record.taxType, "2");
  Check(category.Insert() == 0, "category");
  for (int i = 0; i < 200; ++i) {
    char code[8];
    std::snprintf(code, sizeof code, "%03d", i);
    PutText(item.record.categoryCode, "01");
    PutText(item.record.code, code);
    PutText(item.record.name, "toothbrush");
    Check(item.Insert() == 0, "item");
  }
}

void ReservationToSale(const std::string& folder) {
  constexpr int kSales = 50;
  const std::string oursFolder = folder + "/practice", rawFolder = folder + "/raw";
  CKovaDBSys db;
  for (const std::string& each : {oursFolder, rawFolder}) {
    Check(KovaCreateDatabase(each.c_str()) == 0, "create");
    Check(db.OpenDB(each.c_str()) == 0, "OpenDB");
    PutMasters(db);
    db.CloseDB();
  }
  Check(db.OpenDB(oursFolder.c_str()) == 0, "OpenDB");
  RawDatabase raw(rawFolder + "/kova.db");
  const store::TableDef& sale = *store::FindTable("sale");
  const store::TableDef& saleItem = *store::FindTable("saleitem");
  sqlite3_stmt* category = raw.Prepare("SELECT reducedRate, taxType FROM creditcategory WHERE key0 = ?");
  sqlite3_stmt* item = raw.Prepare("SELECT reducedRate, name FROM credititem WHERE key0 = ?");
  sqlite3_stmt* insertSale = raw.Prepare(InsertSql(sale));
  sqlite3_stmt* insertItem = raw.Prepare(InsertSql(saleItem));
  int number = 0;
  const auto lookUp = [&](sqlite3_stmt* statement, const char* key, int length) {
    sqlite3_bind_blob(statement, 1, key, length, SQLITE_STATIC);
    Check(sqlite3_step(statement) == SQLITE_ROW, "look-up");
    sqlite3_reset(statement);
  };
  const auto insert = [&](sqlite3_stmt* statement, const store::TableDef& table, const void* record) {
    BindRow(statement, table, static_cast<const char*>(record));
    Check(sqlite3_step(statement) == SQLITE_DONE, "raw insert");
    sqlite3_reset(statement);
  };
  Compare(
      "ReservationToSale", "<= 1.5", 21, kSales,
      [&](int) {
        for (int i = 0; i < kSales; ++i) {
          tagFEEREQUEST request{};
          PutText(request.patientCode, "0000012345");
          PutText(request.saleDate, "20261122");
          PutText(request.categoryCode, "01");
          PutText(request.itemCode, "003");
          request.amount = 1080;
          Check(CKovaSubTools::ReservationToSale(&db, &request) == 0, "ReservationToSale");
        }
      },
      [&](int) {
        for (int i = 0; i < kSales; ++i) {
          lookUp(category, "01", 2);
          lookUp(item,
                 "01\0"
                 "003",
                 6);
          char text[16];
          std::snprintf(text, sizeof text, "%012d", ++number);
          tagSALE saleRecord{};
          tagSALEITEM itemRecord{};
          PutText(saleRecord.saleNumber, text);
          PutText(saleRecord.saleDate, "20261122");
          PutText(saleRecord.patientCode, "0000012345");
          saleRecord.total = 1188;
          PutText(itemRecord.saleNumber, text);
          PutText(itemRecord.lineNumber, "0001");
          PutText(itemRecord.itemName, "toothbrush");
          raw.Run("BEGIN IMMEDIATE");
          insert(insertSale, sale, &saleRecord);
          insert(insertItem, saleItem, &itemRecord);
          raw.Run("COMMIT");
        }
      });
  for (sqlite3_stmt* each : {category, item, insertSale, insertItem}) sqlite3_finalize(each);
}

int Main(const std::string& folder) {
  CWinApp app;
  const std::string profile = folder + "/app.ini";
  app.m_pszProfileName = profile.c_str();
  std::ofstream(profile) << "[GLOBAL]\r\nDATABASE=" << folder << "\r\n";
  WriteSettings(folder + "/GLOBALSETTING.ini");
  TaxRate();
  ReservationToSale(folder);
  return 0;
}

}  // namespace
}  // namespace kova::bench

int main(int argc, char** argv) {
  if (argc == 2) return kova::bench::Main(argv[1]);
  std::fprintf(stderr, "usage: operations_bench FOLDER\n");
  return 2;
}
