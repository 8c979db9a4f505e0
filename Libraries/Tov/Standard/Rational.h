#pragma once

#include "../Atomic/PositiveIntegerRanges.h"

namespace tov
{

/** A fraction p/q of two non-negative integers, as frame rates and aspect ratios are given.

    A real loads as the nearest simple fraction (setReal), so that a document may say 29.97
    where it means 30000/1001... within what a denominator of 1000 can say.
*/
class Rational : public Object
{
public:
    TOV_DECLARE_CLASS (Rational, Object)

    explicit Rational (int64_t p = 0, int64_t q = 1);
    Rational (const Rational& other);
    Rational& operator= (const Rational& other)          { other.copyTo (*this); return *this; }

    int64_t getP() const noexcept                         { return p.get(); }
    int64_t getQ() const noexcept                         { return q.get(); }
    /** p / q as a double. */
    double get() const noexcept                           { return (double) getP() / (double) getQ(); }
    void set (int64_t newP, int64_t newQ, bool notify = true);

    /** A whole number when the value is at least 1 and within tolerance of it; otherwise the
        fraction of denominator (or, above 1, numerator) up to 1000 that a Stern-Brocot search
        finds. */
    void setReal (double value, double tolerance, bool notify = true);
    /** The fraction that setReal would give, without a Rational. */
    static void findRational (double value, double tolerance, int64_t& resultP, int64_t& resultQ);

    /** Divides both parts by their greatest common divisor. */
    void simplify (bool notify = true)                    { simplifyAndSet (getP(), getQ(), notify); }
    /** The fraction in lowest terms; 0/1 for a zero denominator. */
    void simplifyAndSet (int64_t newP, int64_t newQ, bool notify = true);
    static int64_t getGCD (int64_t a, int64_t b) noexcept;
    /** 0/1 when p or q is 0, otherwise p/q in lowest terms. */
    Rational getSimplifiedRational() const;

    /** "p/q". */
    juce::String toString() const override;
    /** A real goes through setReal; anything else loads as the variables p and q. */
    bool load (ObjectImporter& importer) override;

private:
    PositiveInteger p;
    StrictlyPositiveInteger q;

    /** The Stern-Brocot search in [0, 1]: 0/0 for a value outside. */
    static void searchUnitInterval (double value, int64_t& resultP, int64_t& resultQ);
};

} // namespace tov
