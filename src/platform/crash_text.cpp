#include "platform/crash_text.h"

CrashText& CrashText::text(const char* words) {
    for (; *words != '\0' && m_size < m_bytes.size(); ++words)
        m_bytes[m_size++] = *words;
    return *this;
}

CrashText& CrashText::digits(std::uint64_t value, unsigned base, std::size_t least) {
    std::array<char, 24> reversed{};
    std::size_t count = 0;
    do {
        reversed[count++] = "0123456789abcdef"[value % base];
        value /= base;
    } while (value != 0 || count < least);
    while (count > 0 && m_size < m_bytes.size())
        m_bytes[m_size++] = reversed[--count];
    return *this;
}

CrashText& CrashText::number(std::uint64_t value) {
    return digits(value, 10, 1);
}

CrashText& CrashText::hex(std::uint64_t value) {
    return text("0x").digits(value, 16, 1);
}

CrashText& CrashText::time(std::int64_t seconds) {
    // The calendar in years that begin on 1 March, so that the leap day is the last of its year
    // and every five months have 153 days; 719468 days lie between 0000-03-01 and 1970-01-01.
    const std::uint64_t all = seconds < 0 ? 0 : static_cast<std::uint64_t>(seconds);
    const std::uint64_t ofDay = all % 86400;
    const std::uint64_t days = all / 86400 + 719468;
    const std::uint64_t ofEra = days % 146097; // an era: 400 years
    const std::uint64_t yearOfEra = (ofEra - ofEra / 1460 + ofEra / 36524 - ofEra / 146096) / 365;
    const std::uint64_t ofYear = ofEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::uint64_t shifted = (5 * ofYear + 2) / 153;
    const std::uint64_t day = ofYear - (153 * shifted + 2) / 5 + 1;
    const std::uint64_t month = shifted < 10 ? shifted + 3 : shifted - 9;
    const std::uint64_t year = yearOfEra + days / 146097 * 400 + (month <= 2 ? 1 : 0);
    digits(year, 10, 4).text("-").digits(month, 10, 2).text("-").digits(day, 10, 2).text("T");
    digits(ofDay / 3600, 10, 2).text(":").digits(ofDay / 60 % 60, 10, 2).text(":");
    return digits(ofDay % 60, 10, 2).text("Z");
}
