#include "core/Clock.h"

namespace {
std::function<QDateTime()> s_source;
}

QDateTime Clock::now() { return s_source ? s_source() : QDateTime::currentDateTime(); }

void Clock::setSource(std::function<QDateTime()> source) { s_source = std::move(source); }
