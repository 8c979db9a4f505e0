#include "Rational.h"
#include <cmath>
#include <numeric>

namespace tov
{

TOV_BEGIN_CLASS (Rational)
    TOV_VARIABLE (p)
    TOV_VARIABLE (q)
TOV_END_CLASS()

// What a real read from a document may differ from its fraction and still be that fraction.
static constexpr double loadTolerance = 1e-9;
// Denominators of the search go up to this.
static constexpr int64_t maximumDenominator = 1000;
// A mediant this close to the value is taken as the value itself.
static constexpr double mediantTolerance = 1e-9;

Rational::Rational (int64_t newP, int64_t newQ) : p (newP), q (newQ)
{
}

Rational::Rational (const Rational& other) : Object (other), p (other.p), q (other.q)
{
}

void Rational::set (int64_t newP, int64_t newQ, bool notify)
{
    p.set (newP, notify);
    q.set (newQ, notify);
}

void Rational::setReal (double value, double tolerance, bool notify)
{
    int64_t newP = 0, newQ = 1;
    findRational (value, tolerance, newP, newQ);
    set (newP, newQ, notify);
}

void Rational::findRational (double value, double tolerance, int64_t& resultP, int64_t& resultQ)
{
    if (value >= 1.0)
    {
        const double nearest = std::round (value);
        if (std::abs (value - nearest) < tolerance)
        {
            resultP = (int64_t) nearest;
            resultQ = 1;
            return;
        }
    }

    // Above 1 the search runs on the inverse, so that the numerator is what stays small.
    if (value > 1.0)
        searchUnitInterval (1.0 / value, resultQ, resultP);
    else
        searchUnitInterval (value, resultP, resultQ);

    if (resultQ == 0)
    {
        resultP = 0;
        resultQ = 1;
    }
}

void Rational::searchUnitInterval (double value, int64_t& resultP, int64_t& resultQ)
{
    resultP = resultQ = 0;
    if (! (value >= 0.0 && value <= 1.0))
        return;

    int64_t lowerP = 0, lowerQ = 1, upperP = 1, upperQ = 1;
    while (lowerQ <= maximumDenominator)
    {
        if (upperQ > maximumDenominator)
            break;

        const int64_t mediantP = lowerP + upperP, mediantQ = lowerQ + upperQ;
        const double mediant = (double) mediantP / (double) mediantQ;
        if (std::abs (value - mediant) < mediantTolerance)
        {
            if (mediantQ <= maximumDenominator)
                resultP = mediantP, resultQ = mediantQ;
            else if (upperQ < lowerQ)
                resultP = upperP, resultQ = upperQ;
            else
                resultP = lowerP, resultQ = lowerQ;
            return;
        }

        if (value > mediant)
            lowerP = mediantP, lowerQ = mediantQ;
        else
            upperP = mediantP, upperQ = mediantQ;
    }

    // The side whose denominator is still within reach: the lower bound once the upper
    // denominator passed the limit, the upper bound once the lower one did.
    if (upperQ > maximumDenominator)
        resultP = lowerP, resultQ = lowerQ;
    else
        resultP = upperP, resultQ = upperQ;
}

void Rational::simplifyAndSet (int64_t newP, int64_t newQ, bool notify)
{
    if (newQ == 0)
    {
        set (0, 1, notify);
        return;
    }
    const int64_t divisor = getGCD (newP, newQ);
    set (newP / divisor, newQ / divisor, notify);
}

int64_t Rational::getGCD (int64_t a, int64_t b) noexcept
{
    return std::gcd (a, b);
}

Rational Rational::getSimplifiedRational() const
{
    if (getP() == 0 || getQ() == 0)
        return Rational (0, 1);
    const int64_t divisor = getGCD (getP(), getQ());
    return Rational (getP() / divisor, getQ() / divisor);
}

juce::String Rational::toString() const
{
    return juce::String (getP()) + "/" + juce::String (getQ());
}

bool Rational::load (ObjectImporter& importer)
{
    if (importer.getCurrentType() == StateType::realType)
    {
        double value = 0.0;
        if (! importer.readReal (value))
            return false;
        setReal (value, loadTolerance);
        return true;
    }
    return Object::load (importer);
}

} // namespace tov
