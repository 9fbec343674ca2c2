/* Writes terrace.3ds with lib3ds: a terrace of 10 by 3 quads and a roof of one, each with its own
   material and texture map. Part of the test data; see make.sh. */
#include <stdio.h>
#include <string.h>
#include <lib3ds/file.h>
#include <lib3ds/material.h>
#include <lib3ds/mesh.h>

static void add_material(Lib3dsFile *file, const char *name, const char *map) {
    Lib3dsMaterial *m = lib3ds_material_new();
    strcpy(m->name, name);
    strcpy(m->texture1_map.name, map);
    m->texture1_map.percent = 1.0f;
    lib3ds_file_insert_material(file, m);
}

int main(int argc, char **argv) {
    Lib3dsFile *file = lib3ds_file_new();
    add_material(file, "seats", "RWH0.BMP");
    add_material(file, "roof", "roof.bmp");

    Lib3dsMesh *terrace = lib3ds_mesh_new("Terrace");
    const int cols = 11, rows = 4;
    lib3ds_mesh_new_point_list(terrace, cols * rows);
    lib3ds_mesh_new_texel_list(terrace, cols * rows);
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < cols; ++c) {
            Lib3dsPoint *p = &terrace->pointL[r * cols + c];
            p->pos[0] = 0.5f * c;      /* along the pitch */
            p->pos[1] = 0.8f * r;      /* away from it */
            p->pos[2] = 0.4f * r;      /* up */
            terrace->texelL[r * cols + c][0] = (float)c / (cols - 1);
            terrace->texelL[r * cols + c][1] = (float)r / (rows - 1);
        }
    lib3ds_mesh_new_face_list(terrace, (cols - 1) * (rows - 1) * 2);
    int f = 0;
    for (int r = 0; r + 1 < rows; ++r)
        for (int c = 0; c + 1 < cols; ++c) {
            const int a = r * cols + c, b = a + 1, d = a + cols, e = d + 1;
            const int tri[2][3] = {{a, b, e}, {a, e, d}};
            for (int t = 0; t < 2; ++t, ++f) {
                for (int k = 0; k < 3; ++k) terrace->faceL[f].points[k] = (Lib3dsWord)tri[t][k];
                strcpy(terrace->faceL[f].material, "seats");
                terrace->faceL[f].flags = 7;
            }
        }
    lib3ds_file_insert_mesh(file, terrace);

    Lib3dsMesh *roof = lib3ds_mesh_new("Roof");
    const float corners[4][3] = {{0, 3, 3}, {5, 3, 3}, {5, 0, 3.5f}, {0, 0, 3.5f}};
    lib3ds_mesh_new_point_list(roof, 4);
    lib3ds_mesh_new_texel_list(roof, 4);
    for (int i = 0; i < 4; ++i) {
        memcpy(roof->pointL[i].pos, corners[i], sizeof corners[i]);
        roof->texelL[i][0] = (i == 1 || i == 2) ? 1.0f : 0.0f;
        roof->texelL[i][1] = (i >= 2) ? 1.0f : 0.0f;
    }
    lib3ds_mesh_new_face_list(roof, 2);
    const int roofFaces[2][3] = {{0, 1, 2}, {0, 2, 3}};
    for (int t = 0; t < 2; ++t) {
        for (int k = 0; k < 3; ++k) roof->faceL[t].points[k] = (Lib3dsWord)roofFaces[t][k];
        strcpy(roof->faceL[t].material, "roof");
    }
    lib3ds_file_insert_mesh(file, roof);

    const char *out = argc > 1 ? argv[1] : "terrace.3ds";
    if (!lib3ds_file_save(file, out)) {
        fprintf(stderr, "lib3ds could not write %s\n", out);
        return 1;
    }
    lib3ds_file_free(file);
    return 0;
}
