/* The public header used from plain C11: builds, reads, writes and deletes a
 * geographic system through the shared library. */
#include <stdio.h>
#include <string.h>

#include "ox.h"

static int failures = 0;
#define CHECK(cond)                                                   \
    do {                                                              \
        if (!(cond)) {                                                \
            fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #cond); \
            ++failures;                                               \
        }                                                             \
    } while (0)

int main(void) {
    static const char wgs84[] =
        "GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],"
        "PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]";
    char text[OX_OBJSTRING_SIZE];
    char name[OX_NAME_SIZE];
    ox_object *g = ox_geogcs_from_string(wgs84);
    ox_object *h;
    ox_object *u;
    CHECK(g != NULL);
    CHECK(ox_geogcs_p(g) == 1);
    CHECK(ox_projcs_p(g) == 0);
    ox_geogcs_to_string(g, text);
    CHECK(strcmp(text, wgs84) == 0);
    ox_geogcs_name(g, name);
    CHECK(strcmp(name, "GCS_WGS_1984") == 0);
    CHECK(ox_geogcs_status(g) == OX_STATUS_STRING);
    h = ox_geogcs_clone(g);
    CHECK(ox_geogcs_eq(g, h) == 1);
    ox_geogcs_del(h);

    u = ox_unit_new("Meter", 1.0);
    CHECK(ox_unit_factor(u) == 1.0);
    CHECK(ox_geogcs_eq(g, u) == 0);
    ox_geogcs_del(u); /* wrong type: nothing happens */
    ox_unit_del(u);

    {
        /* Grid references and geodesics from C: caller-owned text buffers. */
        double point[2] = {15.0, 52.0}, back[2];
        char mgrs[OX_MGRS_SIZE], georef[OX_GEOREF_SIZE];
        char *refs[1];
        double s, azi1, azi2;
        refs[0] = mgrs;
        CHECK(ox_geog_to_mgrs(g, 1, point, 5, 0, refs) == 1);
        CHECK(strcmp(mgrs, "33UWT0000061038") == 0);
        CHECK(ox_mgrs_to_geog_extended(g, 1, refs, OX_MGRS_CENTER, back) == 1);
        CHECK(back[0] > 14.99 && back[0] < 15.01);
        refs[0] = georef;
        CHECK(ox_geog_to_georef(g, 1, point, 2, 0, refs) == 1);
        CHECK(ox_georef_to_geog(g, 1, refs, back) == 1);
        CHECK(ox_geodesic_distance(6378137.0, 0.0, 0.0, 0.0, 1.0, 0.0, &s, &azi1, &azi2) == 1);
        CHECK(s > 6378136.999999 && s < 6378137.000001);
        CHECK(ox_geodesic_coordinate(6378137.0, 0.0, 0.0, 0.0, 1.0, 0.0, NULL, NULL) == 1);
    }
    ox_geogcs_del(g);

    ox_version_string(text);
    CHECK(strcmp(text, ox_version()) == 0);
    CHECK(ox_memalloc(0) == NULL);
    ox_memdealloc(NULL);

    if (failures == 0) printf("c_api: all checks passed\n");
    return failures == 0 ? 0 : 1;
}
