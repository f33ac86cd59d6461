/* A consumer of the installed library: reads and writes an object string
 * (the number reader and writer) and projects a point from the catalogue.
 * Compiled as C and as C++. */
#include <math.h>
#include <stdio.h>
#include <string.h>

#include <ox.h>

int main(void) {
    ox_object *unit = ox_unit_from_string("UNIT[\"Foot_US\",0.3048006096012192]");
    char text[OX_OBJSTRING_SIZE];
    ox_unit_to_string(unit, text);
    ox_unit_del(unit);
    puts(text);
    if (strcmp(text, "UNIT[\"Foot_US\",0.3048006096012192]") != 0) return 1;

    ox_object *utm = ox_factory_projcs(32633);
    double point[2] = {15.0, 52.0};
    const int32_t done = ox_geog_to_proj(utm, 1, point);
    ox_projcs_del(utm);
    printf("%.4f %.4f\n", point[0], point[1]);
    return done == 1 && fabs(point[0] - 500000.0) < 1e-4 && fabs(point[1] - 5761038.2126) < 1e-4 ? 0 : 1;
}
