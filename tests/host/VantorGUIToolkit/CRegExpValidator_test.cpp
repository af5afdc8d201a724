// The regular-expression validator: what the duration field may hold while typing.
#include <gtest/gtest.h>

#include "VantorGUIToolkit/CRegExpValidator.h"

using VantorGUIToolkit::CRegExpValidator;

namespace {

TEST(RegExpValidator, DurationFieldRules)
{
    // Seconds 1 to 1800 without a leading zero.
    const CRegExpValidator regexp(
        QStringLiteral("[1-9]|[1-9][0-9]|[1-9][0-9][0-9]|1[0-7][0-9][0-9]|1800"));
    const struct {
        const char* text;
        QValidator::State state;
    } rows[] = {
        {"", QValidator::Intermediate},
        {"0", QValidator::Invalid},
        {"01", QValidator::Invalid},
        {"1", QValidator::Acceptable},
        {"1799", QValidator::Acceptable},
        {"1800", QValidator::Acceptable},
        {"1801", QValidator::Invalid},
        {"-5", QValidator::Invalid},
        {"\xd9\xa5", QValidator::Invalid},  // Arabic-Indic five: a digit, but not one we store
    };
    for (const auto& r : rows) {
        QString s = QString::fromUtf8(r.text);
        int pos = s.size();
        EXPECT_EQ(regexp.validate(s, pos), r.state) << "'" << r.text << "'";
    }
}

} // namespace
