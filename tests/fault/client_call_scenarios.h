#ifndef CORVANE_TESTS_FAULT_CLIENT_CALL_SCENARIOS_H
#define CORVANE_TESTS_FAULT_CLIENT_CALL_SCENARIOS_H

#include <ostream>
#include <string>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/scripted_cache.h"

// Everything public that calls the client library, each as something to do and what comes of it.
namespace corvane::test {

/// A country as a plain record.
struct CountryRecord : ASDomain, CountryColumns {
  CountryRecord() : ASDomain("country", "Country") { AddTo(*this); }
  CountryRecord(CountryRecord const&) = delete;
  CountryRecord& operator=(CountryRecord const&) = delete;
};

/// The same as a cache that only reads.
struct CountryCache : ASSimpleCache, CountryColumns {
  explicit CountryCache(ASSession* session) : ASDomain("country", "Country"), ASSimpleCache(session, 0) {
    AddTo(*this);
  }
};

/// What the scenarios use; all on one session. The records hold New Zealand.
struct Work {
  explicit Work(ASSession& with);
  Work(Work const&) = delete;
  Work& operator=(Work const&) = delete;
  ~Work();

  ASSession& session;
  CountryRecord country;
  CountryRecord other;
  ASCursor cursor;
  CountryOf<ASCache> cache;
  CountryOf<ASCache> saving;  // with the save-first switch on
  CountryCache simple;
  ASSequence sequence;
  ASUpdater updater;
  ASDeleter deleter;
  ORDBMS::old_cursor older;
};

struct Scenario {
  char const* name;
  std::string (*act)(Work& work);  // says what it gave
  char const* gives;
  std::string (*state)(Work& work);  // what a failure may not change
  bool sequences = false;            // the session has a sequence connection
  unsigned rows = 0;                 // come in while they are read
  bool losesSequence = false;        // that connection could not be opened by the session

  friend std::ostream& operator<<(std::ostream& out, Scenario const& scenario) { return out << scenario.name; }
};

std::vector<Scenario> const& Scenarios();

/// The answers of all their statements, as often as they are asked for.
void AnswerAll(ScriptedClient& client);

}  // namespace corvane::test

#endif
