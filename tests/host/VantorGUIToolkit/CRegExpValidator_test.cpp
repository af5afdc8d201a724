// The regular-expression validator: what the duration field may hold while typing.
#include <gtest/gtest.h>

#include "VantorGUIToolkit/CRegExpValidator.h"

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

// Seconds 1 to 1800 without a leading zero.
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

TEST(RegExpValidator, DurationFieldRules)
{
    const CRegExpValidator regexp(
        QStringLiteral("[1-9]|[1-9][0-9]|[1-9][0-9][0-9]|1[0-7][0-9][0-9]|1800"));
    for (const Row& r : kDurationRows)
        EXPECT_EQ(check(regexp, r.text), r.state) << "'" << r.text << "'";
}

} // namespace
