#pragma once

// The table classes. Each owns one record, `record`, of its table's structure.

#include "platform/recordstore/base_db_call.h"
#include "platform/recordstore/table_ids.h"

/// What every table class has beside CBaseDBCall: its record buffer.
template <typename Record, kova::store::TableId kTable>
class CTableOf : public CBaseDBCall {
 public:
  /// File name and mode are not used; null and 0 as a rule.
  CTableOf(const char* fileName, int mode) : CBaseDBCall(kTable, &record, fileName, mode) {}
  int GetPrimeKeyFromBuffer() override { return PrimeKeyFromBuffer(); }

  /// The table's keys by name: another table's does not compile.
  using Key = typename kova::store::KeysOf<kTable>::Key;
  static constexpr kova::store::TableId kTableId = kTable;
  using CBaseDBCall::SetKey;
  int SetKey(Key key) { return CBaseDBCall::SetKey(static_cast<int>(key)); }

  Record record{};
};

#define KOVA_TABLE_CLASS(Class, Record, id)                         \
  class Class : public CTableOf<Record, kova::store::TableId::id> { \
   public:                                                          \
    using CTableOf::CTableOf;                                       \
  };
// A class with a look-up by its primary key; 0 when found.
#define KOVA_TABLE_CLASS_WITH_GET(Class, Record, id, Get)           \
  class Class : public CTableOf<Record, kova::store::TableId::id> { \
   public:                                                          \
    using CTableOf::CTableOf;                                       \
    int Get(const char* code) { return GetByPrimeKey(code); }       \
  };
#define KOVA_TABLE_CLASS_WITH_GET2(Class, Record, id, Get)                                  \
  class Class : public CTableOf<Record, kova::store::TableId::id> {                         \
   public:                                                                                  \
    using CTableOf::CTableOf;                                                               \
    int Get(const char* first, const char* second) { return GetByPrimeKey(first, second); } \
  };

KOVA_TABLE_CLASS(CCaseCategoryTable, tagCASECATEGORY, CaseCategory)
KOVA_TABLE_CLASS(CCaseInfoDB, tagCASEINFO, CaseInfo)
KOVA_TABLE_CLASS(CCasesTable, tagCASES, Cases)
KOVA_TABLE_CLASS_WITH_GET2(CCategoryDB, tagCATEGORY, Category, GetCategoryData)
KOVA_TABLE_CLASS(CConditionDB, tagCONDITION, Condition)
KOVA_TABLE_CLASS_WITH_GET2(CContractDB, tagCONTRACT, Contract, GetContractData)
KOVA_TABLE_CLASS_WITH_GET2(CContractItemDB, tagCONTRACTITEM, ContractItem, GetContractItemData)
KOVA_TABLE_CLASS_WITH_GET(CCreditCategoryDB, tagCREDITCATEGORY, CreditCategory, GetCreditCategoryData)
KOVA_TABLE_CLASS(CCreditItemAmountDB, tagCREDITITEMAMOUNT, CreditItemAmount)
KOVA_TABLE_CLASS_WITH_GET2(CCreditItemDB, tagCREDITITEM, CreditItem, GetCreditItemData)
KOVA_TABLE_CLASS_WITH_GET(CDoctorDB, tagDOCTOR, Doctor, GetDoctorData)
KOVA_TABLE_CLASS(CIntroDrDB, tagINTRODR, IntroDr)
KOVA_TABLE_CLASS_WITH_GET(CMaterialDB, tagMATERIAL, Material, GetMaterialData)
KOVA_TABLE_CLASS(CMaterialItemCateDB, tagMATERIALITEMCATE, MaterialItemCate)
KOVA_TABLE_CLASS_WITH_GET(CMaterialItemDB, tagMATERIALITEM, MaterialItem, GetMaterialItemData)
KOVA_TABLE_CLASS(COwnerDB, tagOWNER, Owner)
KOVA_TABLE_CLASS_WITH_GET(CPatientDB2, tagPATIENTDB2, Patient2, GetPatient2Data)
KOVA_TABLE_CLASS(CPremiumDB, tagPREMIUM, Premium)
KOVA_TABLE_CLASS_WITH_GET(CRecallGroupDB, tagRECALLGROUP, RecallGroup, GetRecallGroupData)
KOVA_TABLE_CLASS(CReceptCategoryDB, tagRECEPTCATEGORY, ReceptCategory)
KOVA_TABLE_CLASS_WITH_GET(CResReasonDB, tagRESREASON, ResReason, GetResReasonData)
KOVA_TABLE_CLASS(CReservationWayDB, tagRESERVATIONWAY, ReservationWay)
KOVA_TABLE_CLASS_WITH_GET(CStaffDB, tagSTAFF, Staff, GetStaffData)
KOVA_TABLE_CLASS(CTreatmentCategoryDB, tagTREATMENTCATEGORY, TreatmentCategory)
KOVA_TABLE_CLASS(CTreatmentItemDB, tagTREATMENTITEM, TreatmentItem)

#undef KOVA_TABLE_CLASS
#undef KOVA_TABLE_CLASS_WITH_GET
#undef KOVA_TABLE_CLASS_WITH_GET2

/// Free tables; the staff list is table "AA".
class CCustomTblDB : public CTableOf<tagCUSTOMTBL, kova::store::TableId::CustomTbl> {
 public:
  using CTableOf::CTableOf;
  int GetCustomTblData(const char* tableId, const char* code) { return GetByPrimeKey(tableId, code); }
  int GetStaffData(const char* code) { return GetByPrimeKey("AA", code); }
};

/// How a record is written over the current one.
enum UPDATE_TYPE {
  UPDATE_ALWAYS = 0,  ///< whatever the store holds
  UPDATE_IF_UNCHANGED =
      1,  ///< only when the store still holds the record as it was read; else result Changed
};

/// Patients. A patient is two records, in CPatientDB and CPatientDB2, under one key.
class KOVADBCALL_API CPatientDB : public CTableOf<tagPATIENTDB, kova::store::TableId::Patient> {
 public:
  using CTableOf::CTableOf;
  /// Reads both halves; not found when one of them is missing. `second` is bound to this connection when it
  /// is not.
  int GetPatientData(CPatientDB2* second, const char* patientCode);
  /// Reads the first half.
  int GetPatient1Data(const char* patientCode) { return GetByPrimeKey(patientCode); }
  /// Writes both halves over the current records, together or not at all. `updateType` is an UPDATE_TYPE.
  int UpdatePatientData(CPatientDB2* second, int updateType);
};

class KOVADBCALL_API CReservationDB : public CTableOf<tagRESERVATION, kova::store::TableId::Reservation> {
 public:
  using CTableOf::CTableOf;
  int GetReservationData(const char* reservationNumber) { return GetByPrimeKey(reservationNumber); }
  /// `updateType` is an UPDATE_TYPE.
  int Update(int updateType);
  /// Deletes the current record and its entries on the waiting list, together or not at all.
  int Delete();
};

class KOVADBCALL_API CReservationStandbyDB
    : public CTableOf<tagRESERVATIONSTANDBY, kova::store::TableId::ReservationStandby> {
 public:
  using CTableOf::CTableOf;
  /// Reads the first entry of a reservation.
  int GetReservationStandbyDataFromReservationKey(const char* reservationNumber);
};

class KOVADBCALL_API CSaleDB : public CTableOf<tagSALE, kova::store::TableId::Sale> {
 public:
  using CTableOf::CTableOf;
  int GetSaleData(const char* saleNumber) { return GetByPrimeKey(saleNumber); }
  int Update(UPDATE_TYPE updateType);
  /// Deletes the current sale; with a non-zero `withItems` its items too, together or not at all.
  int Delete(int withItems);

  /// Gives the sale in the buffer the next sale number of the practice, writes it and its first item, both or
  /// neither. Numbers are twelve digits and are never given twice, whichever workstation asks.
  ///
  /// @param saleNumber     the number given; empty when the insertion failed
  /// @param item           gets that number and line 0001
  /// @param saleItemTable  a CSaleItemDB bound to the same connection; holds the item afterwards
  int InsertAdjustFee(CString& saleNumber, tagSALEITEM* item, void* saleItemTable);

  /// Sums of a sale's items, read through `saleItemTable` (a bound CSaleItemDB); any pointer may be null.
  ///
  /// @param points         insurance points of the insured items (quantity times points)
  /// @param selfPaid       yen of the other items
  /// @param reducedAmount  yen of those of them at the reduced rate
  /// @param tax            the sale's tax
  /// @param total          selfPaid and the sale's insured amount and tax, less the discount
  /// 0 when the items were read; all sums are 0 otherwise. Sums are 32-bit and wrap.
  static int CalcSum(tagSALE* sale, void* saleItemTable, long* points, long* selfPaid, long* reducedAmount,
                     long* tax, long* total);
};

class CSaleItemDB : public CTableOf<tagSALEITEM, kova::store::TableId::SaleItem> {
 public:
  using CTableOf::CTableOf;
};

class KOVADBCALL_API CChargeDB : public CTableOf<tagCHARGE, kova::store::TableId::Charge> {
 public:
  CChargeDB() : CTableOf(nullptr, 0) {}
  /// Deletes the current charge. With `receiptedToo` 0 a charge that a receipt was given for stays (result
  /// Receipted).
  int Delete(int receiptedToo);
};
