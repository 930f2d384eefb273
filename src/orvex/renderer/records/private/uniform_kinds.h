#pragma once

/// @file
/// The one list of the kinds of uniforms that programs are given. Whoever has an operation per kind
/// expands it, so that a new kind is a row here, an enumerator and a declaration.
///
/// A row reads
///
///     FORM(kind, KIND, Type, components, field)
///
/// - `kind` ends the names of the setters: `set_uniform_2fv`, `gpu_program_set_uniform_2fv`; of
///   OpenGL's too, `glUniform2fv`, but for handles and matrices.
/// - `KIND` ends the enumerator, `GPU_SHADER_UNIFORM_2FV`.
/// - `Type` is what a setter takes, or points to.
/// - `components` counts the numbers of one element: 1 to 4, of a matrix 9 or 16.
/// - `field` is where `GpuProgramUniform` keeps the value.
///
/// The form says how the value is given and kept:
///
/// - `VALUE`    one to four numbers; a vector field, x first
/// - `WORDS`    one to four unsigned numbers; an array field
/// - `HANDLE`   one texture handle; a field of its type
/// - `ARRAY`    a pointer and a count of elements; a vector of plain numbers
/// - `HANDLES`  a pointer to texture handles and a count; a vector of them
/// - `MATRIX`   a pointer to the numbers, column by column; the setters that take a count of
///              matrices, in a renderer and in a front end, end in `v`: `set_uniform_3x3fv`
/// - `KEPT`     as `MATRIX`, but only a record takes it: no renderer has a setter for it
///
/// An expander passes a macro for each form, the same one twice where two forms read alike, and
/// `ORVEX_NO_UNIFORM` for a form that it passes over. The order of rows means nothing.
///
/// @code
/// #define NAME_OF(kind, KIND, Type, components, field) #kind,
/// const char* const names[] = {
///     ORVEX_UNIFORM_KINDS(NAME_OF, NAME_OF, NAME_OF, NAME_OF, NAME_OF, NAME_OF, NAME_OF)};
/// #undef NAME_OF
/// @endcode

// clang-format off
#define ORVEX_UNIFORM_KINDS(VALUE, WORDS, HANDLE, ARRAY, HANDLES, MATRIX, KEPT)  \
    VALUE(  1i,     1I,     int,                1,  i)                           \
    VALUE(  2i,     2I,     int,                2,  i)                           \
    VALUE(  3i,     3I,     int,                3,  i)                           \
    VALUE(  4i,     4I,     int,                4,  i)                           \
    VALUE(  1f,     1F,     float,              1,  f)                           \
    VALUE(  2f,     2F,     float,              2,  f)                           \
    VALUE(  3f,     3F,     float,              3,  f)                           \
    VALUE(  4f,     4F,     float,              4,  f)                           \
    VALUE(  1d,     1D,     double,             1,  d)                           \
    VALUE(  2d,     2D,     double,             2,  d)                           \
    VALUE(  3d,     3D,     double,             3,  d)                           \
    VALUE(  4d,     4D,     double,             4,  d)                           \
    WORDS(  1ui,    1UI,    unsigned int,       1,  ui)                          \
    WORDS(  2ui,    2UI,    unsigned int,       2,  ui)                          \
    WORDS(  3ui,    3UI,    unsigned int,       3,  ui)                          \
    WORDS(  4ui,    4UI,    unsigned int,       4,  ui)                          \
    HANDLE( 1ui64,  1UI64,  unsigned long long, 1,  ui64)                        \
    ARRAY(  1iv,    1IV,    int,                1,  iv)                          \
    ARRAY(  2iv,    2IV,    int,                2,  iv)                          \
    ARRAY(  3iv,    3IV,    int,                3,  iv)                          \
    ARRAY(  4iv,    4IV,    int,                4,  iv)                          \
    ARRAY(  1fv,    1FV,    float,              1,  fv)                          \
    ARRAY(  2fv,    2FV,    vec2,               2,  fv)                          \
    ARRAY(  3fv,    3FV,    vec3,               3,  fv)                          \
    ARRAY(  4fv,    4FV,    vec4,               4,  fv)                          \
    ARRAY(  1dv,    1DV,    double,             1,  dv)                          \
    ARRAY(  2dv,    2DV,    double,             2,  dv)                          \
    ARRAY(  3dv,    3DV,    double,             3,  dv)                          \
    ARRAY(  4dv,    4DV,    double,             4,  dv)                          \
    HANDLES(1ui64v, 1UI64V, unsigned long long, 1,  ui64v)                       \
    MATRIX( 3x3f,   3X3F,   float,              9,  m3f)                         \
    MATRIX( 4x4f,   4X4F,   float,              16, m4f)                         \
    KEPT(   3x3d,   3X3D,   double,             9,  m3d)                         \
    KEPT(   4x4d,   4X4D,   double,             16, m4d)

/// The renderer's setters by location, as FORM(setter, kind, Type, components): their names and
/// their choice of kinds follow no rule. Handles, which alone test the location, aren't among them.
#define ORVEX_UNIFORM_LOCATION_SETTERS(VALUE, ARRAY, MATRIX)  \
    VALUE( 1i_loc,    1i,    int,   1)                        \
    VALUE( 2i_loc,    2i,    int,   2)                        \
    VALUE( 3i_loc,    3i,    int,   3)                        \
    VALUE( 4i_loc,    4i,    int,   4)                        \
    VALUE( 1f_loc,    1f,    float, 1)                        \
    VALUE( 2f_loc,    2f,    float, 2)                        \
    VALUE( 3f,        3f,    float, 3)                        \
    VALUE( 4f_loc,    4f,    float, 4)                        \
    ARRAY( 4fv_loc,   4fv,   vec4,  4)                        \
    MATRIX(3x3fv_loc, 3x3fv, float, 9)                        \
    MATRIX(4x4fv_loc, 4x4fv, float, 16)
// clang-format on

/// For the forms that an expander passes over.
#define ORVEX_NO_UNIFORM(...)

/// The parameters of a setter of so many numbers: `ORVEX_UNIFORM_PARAMETERS_2(float)` reads
/// `float x, float y`.
#define ORVEX_UNIFORM_PARAMETERS_1(Type) Type x
#define ORVEX_UNIFORM_PARAMETERS_2(Type) Type x, Type y
#define ORVEX_UNIFORM_PARAMETERS_3(Type) Type x, Type y, Type z
#define ORVEX_UNIFORM_PARAMETERS_4(Type) Type x, Type y, Type z, Type w

/// Their names, to hand them on.
#define ORVEX_UNIFORM_ARGUMENTS_1 x
#define ORVEX_UNIFORM_ARGUMENTS_2 x, y
#define ORVEX_UNIFORM_ARGUMENTS_3 x, y, z
#define ORVEX_UNIFORM_ARGUMENTS_4 x, y, z, w
