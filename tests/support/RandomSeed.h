#pragma once

#include <QtGlobal>

#include <random>

// Returns the seed for a random test: the number in the environment variable PANTRYWISE_TEST_SEED,
// or a new one. Prints it first, so that even a test that crashes can be repeated.
inline unsigned randomSeed()
{
    bool isGiven = false;
    const int given = qEnvironmentVariableIntValue("PANTRYWISE_TEST_SEED", &isGiven);
    // Shifted so that it fits into the int that qEnvironmentVariableIntValue() returns.
    const unsigned seed = isGiven ? static_cast<unsigned>(given) : std::random_device{}() >> 1U;
    qInfo("PANTRYWISE_TEST_SEED=%u", seed);
    return seed;
}
