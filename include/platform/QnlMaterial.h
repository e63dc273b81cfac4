#pragma once

#include <cstddef>

/// Material record. The program reads only the type code; the rest belongs to the material library.
struct QnlMaterial {
    void* properties;  ///< the library's own
    unsigned char unused[268];
    int typeCode;  ///< 6: flake-filled
};

static_assert(offsetof(QnlMaterial, typeCode) == 276);

/// Reads a material file. Gives null after one line on standard output that names the file, the line and
/// the fault. Released with QnlReleaseMaterial.
QnlMaterial* QnlGetMaterial(const char* path);

bool QnlIsThermoplastic(const QnlMaterial* material);
bool QnlIsThermoset(const QnlMaterial* material);

/// Freeze temperature, degC.
double QnlGetFreezeTemp(const QnlMaterial* material);

/// Density, g/cm3, at a pressure in Pa and a temperature in degC; `rate` is not used.
double QnlGetDensity(const QnlMaterial* material, double pressure, double temperature, double rate);

void QnlReleaseMaterial(QnlMaterial* material);
