#pragma once
// Time, angles, fixed noise and solid geometry for the demo loops.
//
// Everything is a pure function. Time runs from 0 to 1 over a loop and an angle is counted in
// turns, so a motion of a whole number of turns in a loop has no seam. Noise is a hash of whole
// numbers: the same on every machine and in every run.

#include <cmath>
#include <cstdint>

namespace demo {

constexpr float real(int value) {
    return static_cast<float>(value);
}
inline int floored(float value) {
    return static_cast<int>(std::floor(value));
}
inline int nearest(float value) {
    return floored(value + 0.5F);
}
inline float fraction(float value) {
    return value - std::floor(value);
}
// The remainder of a division, never negative.
constexpr int wrapped(int value, int count) {
    return ((value % count) + count) % count;
}

// The time of a frame, 0 to below 1.
constexpr float timeOf(int frame, int frames) {
    return real(frame % frames) / real(frames);
}

inline constexpr float kTurn = 6.2831853F;  // radians
inline float sinTurn(float turns) {
    return std::sin(fraction(turns) * kTurn);
}
inline float cosTurn(float turns) {
    return std::cos(fraction(turns) * kTurn);
}
// The direction of a vector, -0.5 to 0.5.
inline float turnOf(float x, float y) {
    return std::atan2(y, x) / kTurn;
}

// 0 to 1 with no speed at either end.
constexpr float eased(float t) {
    return t * t * (3.0F - 2.0F * t);
}

constexpr uint32_t hashOf(uint32_t a, uint32_t b) {
    uint32_t h = a * 0x9E3779B1U + b * 0x85EBCA77U + 0x165667B1U;
    h = (h ^ (h >> 15)) * 0x2C1B3C6DU;
    h = (h ^ (h >> 12)) * 0x297A2D39U;
    return h ^ (h >> 15);
}

// A fixed number for a thing and one of its properties: 0 to below 1, or 0 to count - 1.
constexpr float noiseUnit(int thing, int property) {
    const uint32_t h = hashOf(static_cast<uint32_t>(thing), static_cast<uint32_t>(property));
    return static_cast<float>(h >> 8) / 16777216.0F;
}
constexpr int noisePick(int thing, int property, int count) {
    const uint32_t h = hashOf(static_cast<uint32_t>(thing), static_cast<uint32_t>(property));
    return static_cast<int>((h >> 8) % static_cast<uint32_t>(count));
}

struct Vec3 {
    float x, y, z;
};

inline Vec3 turnedX(Vec3 v, float turns) {
    const float c = cosTurn(turns);
    const float s = sinTurn(turns);
    return {v.x, v.y * c - v.z * s, v.y * s + v.z * c};
}
inline Vec3 turnedY(Vec3 v, float turns) {
    const float c = cosTurn(turns);
    const float s = sinTurn(turns);
    return {v.x * c + v.z * s, v.y, v.z * c - v.x * s};
}
inline Vec3 turnedZ(Vec3 v, float turns) {
    const float c = cosTurn(turns);
    const float s = sinTurn(turns);
    return {v.x * c - v.y * s, v.x * s + v.y * c, v.z};
}

}  // namespace demo
