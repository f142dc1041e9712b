#pragma once

#include <QByteArray>

namespace jet {

/** What the first page of a file says. */
struct Header {
    bool isJet3 = false;
    int codePage = 1252; // of texts in a Jet 3 file
    bool hasPassword = false;
};

inline constexpr int kHeaderSize = 0x98;

/** Throws Error unless the bytes are the head of a Jet file of a known version. */
Header readHeader(const QByteArray &head);

} // namespace jet
