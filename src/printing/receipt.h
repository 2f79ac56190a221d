#pragma once

// What a host hands over to have a receipt printed. Layout shared with hosts; do not change. Texts are code
// page 932, zero-terminated within their fields; amounts are whole yen.

#include <cstdint>

/// A date and time as days since 1899-12-30 (before that day the fraction still counts forward in the day),
/// with a status; the layout of MFC's COleDateTime.
struct _TMPRECEIPTDATE {
  double days;
  std::int32_t status;  ///< 0 valid; any other value: no date
};

/// How the amount of a self-paid line stands to consumption tax.
enum _TMPTAXCLASS : std::uint8_t {
  TMPTAX_PRACTICE = 0,  ///< as the practice's settings say: on top ("ConsumptionTax" 1) or included
  TMPTAX_NONE = 1,      ///< not taxed
  TMPTAX_ON_TOP = 2,    ///< tax is put on top of the amount
  TMPTAX_INCLUDED = 3,  ///< the amount includes its tax
};

/// One line of a receipt.
struct _TMPSALEITEM {
  char saleDate[9];             ///< YYYYMMDD; decides whether a reduced rate is in force
  char receiptCategoryCode[4];  ///< category on receipts, three digits; its number is the integer at its
                                ///< beginning
  std::uint8_t status;          ///< 0: may stand for the whole receipt in the one-line summary
  char itemName[41];
  char printName[41];             ///< printed in the place of the name when it is not empty
  std::uint8_t insuranceItem;     ///< non-zero: of the insured part, counted in points
  std::uint8_t insuranceApplied;  ///< non-zero: a line in yen that belongs to the insured part
  std::uint8_t categoryReduced;   ///< non-zero: its credit category is one of the reduced tax rate
  std::uint8_t itemReduced;       ///< non-zero: the credit item is
  std::uint8_t taxClass;          ///< a _TMPTAXCLASS; of no meaning for the insured part, which is not taxed
  std::int32_t quantity;
  std::int32_t unitValue;  ///< unit price; of an insurance item its points
  std::int32_t amount;     ///< of an insurance item the patient's share
  char remark[41];
};

/// One receipt. The amounts are the caller's: what was charged is printed, nothing is computed anew.
struct _TMPRECEIPT {
  char receiptNumber[21];
  char payerName[41];
  char memo[101];  ///< also the remark of the first line
  char patientCode[21];
  char staffName[41];  ///< who issues it
  char paymentMethod[41];
  char insuranceType[41];
  char burdenText[21];    ///< the patient's share, "30%"
  char directorName[41];  ///< who stands for the practice
  char doctorName[41];
  char departmentName[41];
  char closingText[81];  ///< explains the number that the form shows behind it, the reduced rate in percent
  char greeting[81];
  _TMPRECEIPTDATE receiptDate;
  _TMPRECEIPTDATE fromDate;  ///< with toDate: the days that the receipt is for
  _TMPRECEIPTDATE toDate;
  _TMPRECEIPTDATE issueDate;

  std::int32_t total;         ///< charged: insured + selfPaid, tax included, before the discount
  std::int32_t insured;       ///< insured part: the contribution, and the lines that insurance is applied to
  std::int32_t selfPaid;      ///< self-paid part, tax included
  std::int32_t taxInclusive;  ///< tax within the amounts that include it
  std::int32_t taxExclusive;  ///< tax put on top of the others; part of total
  std::int32_t received;
  std::int32_t change;
  std::int32_t discount;
  std::int32_t taxRate;         ///< normal rate in whole percent
  std::int32_t reducedTaxRate;  ///< reduced rate in whole percent; 0 for none
  // What a qualified invoice says of each rate: the amount with tax, less its share of the discount, and the
  // tax in it, rounded once. Not taxed: the same of the rest of the self-paid part.
  std::int32_t normalRateTotal;
  std::int32_t normalRateTax;
  std::int32_t reducedRateTotal;
  std::int32_t reducedRateTax;
  std::int32_t notTaxedTotal;
  std::int32_t contractTotal;  ///< of the contract that is paid in instalments; 0 for none
  std::int32_t contractPaid;
  char contractDate[9];     ///< YYYYMMDD
  std::uint8_t continuing;  ///< non-zero: a sale under a continuing contract ("ConsumptionTaxCont" counts)

  std::int32_t itemCount;
  _TMPSALEITEM** items;  ///< the lines, in the order of the receipt; the caller's
};

/// For CreatePrintTmp: the receipt was printed before and says so. Other bits have no meaning.
constexpr unsigned int KOVA_PRINT_REISSUED = 1;
