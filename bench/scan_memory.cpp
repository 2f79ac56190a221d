// Opens the practice's database, reads through all reservations and prints how many there were and the most
// memory that the process held. scan_memory PRACTICE

#include <sys/resource.h>

#include <cstdio>

#include "platform/recordstore/kovadbcall.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  CKovaDBSys db;
  CReservationDB table(nullptr, 0);
  if (db.OpenDB(argv[1]) != 0 || table.SetAssociatedDB(&db) != 0) return 1;
  long count = 0;
  {
    const CKovaReads reads(&db);
    for (int r = table.GetFIRST(); r == 0; r = table.GetNEXT()) ++count;
  }
  rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  std::printf("%-44s %ld reservations, at most %.1f MB held   aim < 50 MB\n",
              "reading through the large practice", count, static_cast<double>(usage.ru_maxrss) / 1024);
  return 0;
}
