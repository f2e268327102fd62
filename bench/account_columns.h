#ifndef CORVANE_BENCH_ACCOUNT_COLUMNS_H
#define CORVANE_BENCH_ACCOUNT_COLUMNS_H

#include <corvane/corvane.h>

namespace bench {

/// The columns and values of an Account, for a record or a cache.
struct AccountColumns {
  ASInt id;
  ASInt64 account;
  ASVStr name{64};
  ASStr code{8};
  ASDouble balance;
  ASDouble price;
  ASTime created;
  ASVStr note{200};
  ASInt age;
  ASRealBlob photo{0};
  ASAttribute idColumn{"id", "", 0, corvane::kKey | corvane::kAutoIncrement};
  ASAttribute accountColumn{"account"};
  ASAttribute nameColumn{"name"};
  ASAttribute codeColumn{"code"};
  ASAttribute balanceColumn{"balance"};
  ASAttribute priceColumn{"price"};
  ASAttribute createdColumn{"created"};
  ASAttribute noteColumn{"note"};
  ASAttribute ageColumn{"age"};
  ASAttribute photoColumn{"photo"};

  void AddTo(ASDomain& record) {
    record.Add(idColumn, id).Add(accountColumn, account).Add(nameColumn, name).Add(codeColumn, code);
    record.Add(balanceColumn, balance).Add(priceColumn, price).Add(createdColumn, created).Add(noteColumn, note);
    record.Add(ageColumn, age).Add(photoColumn, photo);
  }
};

}  // namespace bench

#endif
