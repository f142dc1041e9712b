#pragma once

#include <QList>

#include <initializer_list>
#include <random>

/** The generator behind every choice of a walk: the same seed gives the same walk on every machine. */
class Random
{
public:
    explicit Random(quint32 seed)
        : m_engine(seed)
    {
    }

    /** 0 to end - 1. */
    int below(int end) { return int(m_engine() % quint32(end)); }
    bool chance(int percent) { return below(100) < percent; }
    template <class T>
    T of(std::initializer_list<T> list)
    {
        return *(list.begin() + below(int(list.size())));
    }
    template <class T>
    T of(const QList<T> &list)
    {
        return list.at(below(int(list.size())));
    }

private:
    std::mt19937 m_engine;
};
