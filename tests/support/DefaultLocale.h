#pragma once

#include <unicode/locid.h>

#include <gtest/gtest.h>

namespace KWTest {

/// Sets ICU's default locale for the length of a scope.
class DefaultLocale {
public:
    explicit DefaultLocale(const char* name) : previous_(icu::Locale::getDefault()) { set(name); }
    ~DefaultLocale() { set(previous_.getName()); }

private:
    static void set(const char* name) {
        UErrorCode status = U_ZERO_ERROR;
        icu::Locale::setDefault(icu::Locale(name), status);
        EXPECT_TRUE(U_SUCCESS(status));
    }

    icu::Locale previous_;
};

} // namespace KWTest
