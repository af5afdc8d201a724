#pragma once
// The history's filter as a test on one journal row, with the same meaning
// as the history's queries: the shift report's writers use it to keep only
// the rows of a filter, the view to place a live row. Plain functions, any
// thread.
#include "AlarmShowInfo.h"
#include "record/JournalEvent.h"
#include "record/HistoryFilter.h"

namespace BodyTemperature {

// The kinds (HistoryFilter::Kind bits) an event is listed under.
uint32_t HistoryKindsOf(const JournalEvent& e);

// The measured temperature in Celsius (the unit the threshold is given in).
double HistoryCelsius(const JournalEvent& e);

// Whether `value` contains `text`, ASCII letters folded as SQLite's LIKE does.
bool HistoryTextIn(const std::string& value, const std::string& text);

bool HistoryMatches(const HistoryFilter& filter, const JournalEvent& e);

// The SQL condition of each kind bit, for the journal and the site record
// alike. Written exactly as their partial indexes write it, or neither
// database uses those indexes.
struct HistoryKindTerm {
    uint32_t bit;
    const char* sql;
};
extern const HistoryKindTerm kHistoryKindTerms[5];

// A LIKE pattern (escape character '\\') that finds `text` anywhere.
std::string HistoryLikePattern(const std::string& text);

// The detail dialog's record of a journaled event: what the journal keeps
// (codes, camera, time, temperature, mask, matched person, face picture).
AlarmShowInfo HistoryDetailOf(const JournalEvent& e);

} // namespace BodyTemperature
