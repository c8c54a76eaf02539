#pragma once

#include <QtGlobal>

#include <random>

// The seed of a random test: the number in the environment variable PANTRYWISE_TEST_SEED, or a new
// one. A test prints its seed when it fails; the variable then repeats the run.
inline unsigned randomSeed()
{
    bool isGiven = false;
    const int given = qEnvironmentVariableIntValue("PANTRYWISE_TEST_SEED", &isGiven);
    // Fits into an int, as qEnvironmentVariableIntValue() reads it.
    return isGiven ? static_cast<unsigned>(given) : std::random_device{}() >> 1U;
}
