// The host's strict validators: what a field may hold while typing.
#include <gtest/gtest.h>

#include "VantorGUIToolkit/CRegExpValidator.h"

using VantorGUIToolkit::CIntValidator;
using VantorGUIToolkit::CRegExpValidator;

namespace {

struct Row {
    const char* text;
    QValidator::State state;
};

QValidator::State check(const QValidator& v, const char* text)
{
    QString s = QString::fromUtf8(text);
    int pos = s.size();
    return v.validate(s, pos);
}

// Seconds 1 to 1800 without a leading zero: both validators must agree.
const Row kDurationRows[] = {
    {"", QValidator::Intermediate},
    {"0", QValidator::Invalid},
    {"00", QValidator::Invalid},
    {"01", QValidator::Invalid},
    {"1", QValidator::Acceptable},
    {"9", QValidator::Acceptable},
    {"18", QValidator::Acceptable},
    {"180", QValidator::Acceptable},
    {"999", QValidator::Acceptable},
    {"1000", QValidator::Acceptable},
    {"1799", QValidator::Acceptable},
    {"1800", QValidator::Acceptable},
    {"1801", QValidator::Invalid},
    {"1900", QValidator::Invalid},
    {"2000", QValidator::Invalid},
    {"18000", QValidator::Invalid},
    {"-5", QValidator::Invalid},
    {"+5", QValidator::Invalid},
    {" 5", QValidator::Invalid},
    {"5 ", QValidator::Invalid},
    {"1e3", QValidator::Invalid},
    {"\xd9\xa5", QValidator::Invalid},  // Arabic-Indic five: a digit, but not one we store
    {"99999999999999999999", QValidator::Invalid},
};

TEST(Validators, DurationFieldRules)
{
    const CRegExpValidator regexp(
        QStringLiteral("[1-9]|[1-9][0-9]|[1-9][0-9][0-9]|1[0-7][0-9][0-9]|1800"));
    const CIntValidator integer(1, 1800);
    for (const Row& r : kDurationRows) {
        EXPECT_EQ(check(regexp, r.text), r.state) << "regexp: '" << r.text << "'";
        EXPECT_EQ(check(integer, r.text), r.state) << "int: '" << r.text << "'";
    }
}

TEST(Validators, IntBelowTheRangeIsIntermediateOnlyWhileItCanStillGrowIntoIt)
{
    struct RangeRow {
        int bottom;
        int top;
        const char* text;
        QValidator::State state;
    };
    const RangeRow rows[] = {
        {10, 50, "1", QValidator::Intermediate},   // 10..19
        {10, 50, "5", QValidator::Intermediate},   // 50
        {10, 50, "6", QValidator::Invalid},        // 60.. is above 50
        {10, 50, "51", QValidator::Invalid},
        {10, 50, "0", QValidator::Invalid},
        {100, 5000, "9", QValidator::Intermediate},  // 900..999
        {100, 150, "2", QValidator::Invalid},        // 20..29 and 200.. miss
        {0, 9, "0", QValidator::Acceptable},
        {0, 9, "10", QValidator::Invalid},
    };
    for (const RangeRow& r : rows) {
        const CIntValidator v(r.bottom, r.top);
        EXPECT_EQ(check(v, r.text), r.state) << r.bottom << ".." << r.top << " '" << r.text << "'";
    }
}

} // namespace
