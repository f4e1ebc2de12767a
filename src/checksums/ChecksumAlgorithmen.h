// The arithmetic of the four checksum kinds, over plain byte spans.
//
// Each kind is a small accumulator that is fed the bytes of a walk span by
// span, so that the image classes can hand over whole stretches of their
// storage instead of single bytes. Nothing here knows the image, reports or
// allocates per byte; the checksum classes put the walking rules on top.
//
// All arithmetic is modulo 2 to the 32 (or to the 16 for the CRC-16).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

// Additive sum of addends of 1 to 4 bytes. An addend is read with its first
// byte as the most significant; with `swap` an addend of 2 bytes has its two
// bytes exchanged and one of 4 bytes is reversed (3 bytes never swap: the
// caller clears `swap` for them beforehand).
class StandardSummierer {
public:
    StandardSummierer(int anzahlBytes, bool swap);

    // Feeds bytes in walk order. Complete addends are added; the bytes of an
    // addend that is still incomplete wait for the next call.
    void nimm(const std::uint8_t* daten, std::size_t anzahl);
    // The same for `anzahl` zero bytes, in constant time.
    void nimmNullen(std::uint64_t anzahl);

    // Adds the waiting bytes as a short addend of only that many bytes (the
    // walk ran into the end of the address space). Does nothing when none wait.
    void schliesseAb();

    // Bytes of the incomplete addend that waits, 0 to anzahlBytes - 1.
    int offen() const { return offen_; }

    // Sum of all complete addends so far.
    std::uint32_t summe() const;

    int anzahlBytes() const { return anzahlBytes_; }
    bool swap() const { return swap_; }

private:
    void nimmBlock(const std::uint8_t* daten, std::size_t anzahl);
    void addiereAddend(const std::uint8_t* bytes, int anzahl);

    int anzahlBytes_;
    bool swap_;
    // Sums of the bytes by their position inside the addend; weighted only
    // when the result is asked for, which keeps the inner loop free of shifts.
    std::array<std::uint64_t, 4> positionsSumme_{};
    std::uint32_t einzelSumme_ = 0;  // short addends of schliesseAb
    std::uint8_t teil_[4]{};
    int offen_ = 0;
};

// Four-lane sum with carries and rotation. The lane of a byte is chosen by
// the two low bits of its absolute address, so callers pass the address of
// the first byte of each span.
class SiemensSummierer {
public:
    void nimm(std::uint32_t adr, const std::uint8_t* daten, std::size_t anzahl);
    // `anzahl` zero bytes from `adr` on, in constant time.
    void nimmNullen(std::uint32_t adr, std::uint64_t anzahl);
    // Lane 0 in the most significant byte.
    std::uint32_t ergebnis() const;

private:
    std::uint8_t summe_[4]{};
    std::uint32_t uebertrag_[4]{};
};

// CRC-32 as used by IEEE 802.3: reflected polynomial 0xEDB88320, start and
// final XOR 0xFFFFFFFF. Sixteen bytes per table round.
class Crc32Rechner {
public:
    void nimm(const std::uint8_t* daten, std::size_t anzahl);
    // `anzahl` zero bytes in logarithmic time, for the holes of a walk.
    void nimmNullen(std::uint64_t anzahl);
    std::uint32_t ergebnis() const { return register_ ^ 0xFFFFFFFFu; }

private:
    std::uint32_t register_ = 0xFFFFFFFFu;
};

// CRC-16 shifted most significant bit first, start 0, no final XOR, for any
// polynomial. With 0x1021 this is the common XMODEM form. With 0xA001 the
// bit-reversed polynomial is deliberately shifted in the unreflected
// direction; the results match no published CRC-16 and must stay as they are.
class Crc16Rechner {
public:
    explicit Crc16Rechner(std::uint16_t polynom);
    ~Crc16Rechner();
    Crc16Rechner(const Crc16Rechner&) = delete;
    Crc16Rechner& operator=(const Crc16Rechner&) = delete;

    void nimm(const std::uint8_t* daten, std::size_t anzahl);
    void nimmNullen(std::uint64_t anzahl);
    std::uint16_t ergebnis() const { return register_; }

    struct Tabellen;

private:
    std::uint16_t register_ = 0;
    const Tabellen* tabellen_;
    std::unique_ptr<Tabellen> eigene_;  // for a polynomial without a ready table
};

// The 16-bit result handed on as a signed number widened to 32 bits: bit 15
// set fills the upper half with ones.
inline std::uint32_t vorzeichenErweitert(std::uint16_t wert) {
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(static_cast<std::int16_t>(wert)));
}
