#ifndef ORVEX_C_ORVEX_H
#define ORVEX_C_ORVEX_H

/// @file
/// The kit for C99, and for every language that can call C: models and meshes in, pictures and
/// numbers out.
///
/// **Results.** Every operation answers an `orvex_result`, 0 for well done, and hands what it makes
/// out by pointer; on failure that pointer's target is null or stays as it was. Why, in a
/// sentence that names the argument and its value, is told by `orvex_last_error`. Nothing throws,
/// nothing ends the process.
///
/// **Handles** are numbers in the dress of pointers: nobody may look behind them. Each is checked
/// at each call, so that one that is null, ended, of another kind, or of an engine that was stopped
/// is answered with `ORVEX_ERROR_HANDLE`. Whoever makes one ends it, in any order;
/// `orvex_engine_stop` ends all that are left.
///
/// **Records** begin with their `size`, to be set to `sizeof` by the caller, so that they can grow:
/// fields are added at their ends only. Of a smaller one, from a program that was built with an
/// older header, the fields that it has are read or written. A larger one, from a newer header, is
/// refused where it asks for what this library doesn't know: a byte beyond its end isn't 0. What is
/// handed out to a larger one leaves 0 there. In what is handed in 0 is always the default, and a
/// null pointer to a record of options stands for all defaults:
/// @code
/// orvex_view_options options = {.size = sizeof options};
/// options.samples = 8;
/// @endcode
///
/// **Threads.** The engine belongs to the thread that started it, and with it all handles: another
/// thread is answered with `ORVEX_ERROR_THREAD`. A process that was forked off afterwards, or after
/// the first view or list of devices even though no engine runs, is answered with
/// `ORVEX_ERROR_FORK`, and its parent draws on unharmed. A log callback that calls back is answered
/// with `ORVEX_ERROR_CALLBACK`. Operations without a handle, but for `orvex_engine_start`, may be
/// called on any thread, at any time, also from the callback.
///
/// **Memory.** What the caller hands in is read during the call, and never kept. Strings are UTF-8,
/// ended by a 0 byte; those handed out are the library's, each valid as it says.
///
/// **Units.** Lengths are in the units of the models, angles in degrees, sizes and places in pixels
/// from the upper left corner of a picture, whose pixels have their middles at half integers.
///
/// @code
/// orvex_engine engine = NULL;
/// orvex_view view = NULL;
/// orvex_model model = NULL;
/// orvex_camera camera = {.size = sizeof camera};
/// if (orvex_engine_start(NULL, &engine) || orvex_view_create(engine, 640, 480, NULL, &view) ||
///     orvex_model_load(engine, "lighthouse.obj", NULL, &model) ||
///     orvex_camera_orbit(&model, 1, 640, 480, NULL, &camera) ||
///     orvex_view_draw(view, &camera, &model, 1) ||
///     orvex_view_write(view, "lighthouse.png", NULL))
///     fprintf(stderr, "%s\n", orvex_last_error());
/// orvex_engine_stop(engine);
/// @endcode

#include <stddef.h>
#include <stdint.h>

// Records end without padding, so that a field that is added later has a place of its own.

#if defined(__GNUC__)
/// Exports an operation from the shared library. Everything else in it is hidden.
#define ORVEX_C_API __attribute__((visibility("default")))
#else
#define ORVEX_C_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/// @name Results
/// @{

/// What became of a call: one of those below, and in later versions others that aren't 0.
typedef int32_t orvex_result;
enum {
    ORVEX_OK = 0,             ///< all went well
    ORVEX_ERROR_ARGUMENT = 1, ///< a null pointer, a number outside its range, a bad record
    ORVEX_ERROR_HANDLE = 2,   ///< a handle that is null, ended, or of another kind
    ORVEX_ERROR_THREAD = 3,   ///< the engine belongs to another thread
    ORVEX_ERROR_FORK = 4,     ///< the engine belongs to the process that this one came from
    ORVEX_ERROR_CALLBACK = 5, ///< a log callback has called back
    ORVEX_ERROR_ENGINE = 6,   ///< one runs already, or it doesn't start
    ORVEX_ERROR_DRIVER = 7,   ///< no driver, or it hasn't got what was asked for
    ORVEX_ERROR_FILE = 8,     ///< a file that can't be read, understood or written
    ORVEX_ERROR_LOOK = 9,     ///< there is no such look, or it doesn't compile
    ORVEX_ERROR_MEMORY = 10,  ///< there isn't enough
    ORVEX_ERROR_INTERNAL = 11 ///< a mistake of the library's own
};

/// Why the last call on this thread failed: a sentence without a full stop; empty if it was well
/// done. Never null. The library's, valid until the next call on this thread. Any thread; itself it
/// isn't such a call.
ORVEX_C_API const char* orvex_last_error(void);
/// The name of a result as it stands above, such as "ORVEX_ERROR_FILE"; "unknown" for any other
/// number. Valid for ever; any thread. Leaves `orvex_last_error` alone, too.
ORVEX_C_API const char* orvex_result_name(orvex_result result);
/// The version of the library, such as "0.9.0". Valid for ever; any thread. Leaves
/// `orvex_last_error` alone, too.
ORVEX_C_API const char* orvex_version(void);
/// @}

/// @name Kinds of numbers
/// @{

/// What numbers of the caller's are: one of those below.
typedef int32_t orvex_type;
enum {
    ORVEX_TYPE_DEFAULT = 0, ///< what is told where it is used
    ORVEX_TYPE_U8 = 1,      ///< `uint8_t`
    ORVEX_TYPE_U16 = 2,     ///< `uint16_t`
    ORVEX_TYPE_U32 = 3,     ///< `uint32_t`
    ORVEX_TYPE_I32 = 4,     ///< `int32_t`
    ORVEX_TYPE_I64 = 5,     ///< `int64_t`
    ORVEX_TYPE_F32 = 6,     ///< `float`
    ORVEX_TYPE_F64 = 7      ///< `double`
};

/// Numbers of the caller's, so many together for each element. It has no size, as it never grows.
/// Numbers of one element lie side by side.
typedef struct orvex_array {
    const void* data;   ///< the first element; null for none
    orvex_type type;    ///< of each number; which ones are taken is told where it is used
    int32_t components; ///< numbers an element; 0 for as many as are told where it is used
    ptrdiff_t stride;   ///< bytes from one element to the next, also negative; 0 for no gaps
} orvex_array;

/// Which direction of a model's space points up.
typedef int32_t orvex_up_axis;
enum {
    ORVEX_UP_AUTOMATIC = 0, ///< the model's own
    ORVEX_UP_X = 1,         ///< as their names say
    ORVEX_UP_Y = 2,
    ORVEX_UP_Z = 3,
    ORVEX_UP_MINUS_X = 4,
    ORVEX_UP_MINUS_Y = 5,
    ORVEX_UP_MINUS_Z = 6
};
/// @}

/// @name Engine
/// @{

/// The engine, from its start to its stop. One at a time in a process.
typedef struct orvex_engine_handle* orvex_engine;

/// Receives a line of the engine's log, with its stamp and without a line end. Lines come from
/// whatever thread they arise on, one at a time. It comes back by returning alone: neither by a
/// jump nor, in C++, by an exception, which is dropped.
/// @param user  as it was handed in
/// @param line  the library's, valid during the call
typedef void (*orvex_log_callback)(void* user, const char* line);

/// What the engine is started with.
typedef struct orvex_engine_options {
    size_t size;                ///< of this record
    orvex_log_callback log;     ///< hears the log; null for nobody
    void* log_user;             ///< handed to it
    const char* log_file;       ///< that the log is written to, emptied first; null for none
    int32_t debug_lines;        ///< 1: lets debug lines through, too
    int32_t skip_plugins;       ///< 1: looks for no plugins, neither in the folders that the
                                ///< environment names in `ORVEX_PLUGIN_PATH` nor beside the
                                ///< library
    const char* const* plugins; ///< files of plugins that are loaded in any case; null for none
    size_t plugin_count;        ///< of those
} orvex_engine_options;

/// Starts the engine on this thread, to which it belongs from then on.
/// @param options      null for the defaults
/// @param[out] engine  receives it; null on failure
/// @return `ORVEX_ERROR_ENGINE` where one runs already, on whatever thread. A plugin that can't be
///         loaded is no failure: `orvex_engine_plugin` tells
ORVEX_C_API orvex_result orvex_engine_start(const orvex_engine_options* options,
                                            orvex_engine* engine);
/// Stops it, after everything that was made with it: all their handles are ended. Another can be
/// started then, on any thread.
ORVEX_C_API orvex_result orvex_engine_stop(orvex_engine engine);

/// A plugin that was named, or found. Strings are the engine's, valid until it is stopped.
typedef struct orvex_plugin_info {
    size_t size;        ///< of this record
    const char* path;   ///< of its file
    const char* name;   ///< as it calls itself; empty if it couldn't be loaded
    const char* reason; ///< why it couldn't be; empty if it could
} orvex_plugin_info;

/// How many plugins were named, and then found.
ORVEX_C_API orvex_result orvex_engine_plugin_count(orvex_engine engine, size_t* count);
/// Tells of one. @param index  from 0, below their count
ORVEX_C_API orvex_result orvex_engine_plugin(orvex_engine engine, size_t index,
                                             orvex_plugin_info* info);
/// What models can be read from, as "OBJ, 3DS, STL".
/// @param[out] formats  the engine's, valid until the next call of this or its stop
ORVEX_C_API orvex_result orvex_engine_formats(orvex_engine engine, const char** formats);
/// @}

/// @name Devices
/// @{

/// A device that off-screen views can be drawn by. Strings are the library's, valid until the next
/// `orvex_device_count` on this thread.
typedef struct orvex_device_info {
    size_t size;         ///< of this record
    const char* driver;  ///< its name, or the maker's; empty for a device that is refused
    const char* node;    ///< such as "/dev/dri/renderD128"; empty for software
    const char* pci;     ///< place on the bus, such as "0000:01:00.0"; empty where there is none
    const char* refusal; ///< why it can't be used; empty if it can
    int32_t software;    ///< 1: the processor draws
    int32_t reserved;    ///< 0
} orvex_device_info;

/// Looks for devices, and tries the driver of each: some milliseconds. Needs no engine; any thread,
/// and each has a list of its own. A driver that was tried has started: a process that is forked
/// off afterwards is refused as after a view.
ORVEX_C_API orvex_result orvex_device_count(size_t* count);
/// Tells of a device that the last `orvex_device_count` on this thread has found.
/// @param index  from 0, below their count: what `orvex_view_options.device` takes, too
ORVEX_C_API orvex_result orvex_device(size_t index, orvex_device_info* info);
/// @}

/// @name Views
/// @{

/// Where models are drawn.
typedef struct orvex_view_handle* orvex_view;

/// What a view draws into.
typedef int32_t orvex_surface;
enum {
    ORVEX_SURFACE_OFF_SCREEN = 0, ///< memory of its own, on a context of its own
    ORVEX_SURFACE_CURRENT = 1     ///< the framebuffer that is bound, on the OpenGL context that the
                                  ///< host holds current. It has to be current again for whatever
                                  ///< is done with the view, and at its end
};

/// How models are drawn, and on what kind of context.
typedef int32_t orvex_path;
enum {
    ORVEX_PATH_GL3 = 0, ///< on a core context of OpenGL 3.2 or later
    ORVEX_PATH_GL2 = 1  ///< on a compatibility context of OpenGL 2.1 or later
};

/// What a view is made with.
typedef struct orvex_view_options {
    size_t size;           ///< of this record
    orvex_surface surface; ///< off screen by default
    orvex_path path;       ///< gl3 by default
    int32_t samples;       ///< a pixel, against jagged edges, as many as the driver has at most; 0
                           ///< for 4, 1 for none. A host's framebuffer that has samples itself
                           ///< takes no others
    int32_t supersampling; ///< pixels drawn for one, across and down, 1 to 8; 0 for 1. Slower than
                           ///< samples, and the same on every driver; from 2 on there are no
                           ///< samples
    int32_t depth_bits;    ///< that are wished for; 0 for 24
    int32_t keep_states;   ///< 1, on a host's context: its states are as they were after each call;
                           ///< else they are the engine's
    const char* device;    ///< that draws off screen: its index in the list, its place on the bus,
                           ///< or "software"; null for what `ORVEX_GL_DEVICE` in the environment
                           ///< says, or else for the first that can
} orvex_view_options;

/// Makes a view, with a dark grey background and the look "lit".
/// @param engine        that runs
/// @param width,height  pixels, from 1; the driver has a largest size
/// @param options       null for the defaults
/// @param[out] view     receives it; null on failure
/// @return `ORVEX_ERROR_DRIVER` where there is no driver, one that is too old, or no surface of
///         that size or with so many samples; `orvex_last_error` says what would help
ORVEX_C_API orvex_result orvex_view_create(orvex_engine engine, int32_t width, int32_t height,
                                           const orvex_view_options* options, orvex_view* view);
/// Ends it, and its context unless that is the host's; its texts end with it. Models live on.
ORVEX_C_API orvex_result orvex_view_destroy(orvex_view view);

/// What a view is. Strings are the view's, valid until it ends.
typedef struct orvex_view_info {
    size_t size;           ///< of this record
    int32_t width;         ///< pixels
    int32_t height;        ///< pixels
    int32_t samples;       ///< a pixel, as many as there are; 1 without
    int32_t supersampling; ///< pixels drawn for one, across and down; 1 without
    orvex_path path;       ///< as asked for
    const char* driver;    ///< what draws, as OpenGL names it
} orvex_view_info;

/// Tells what it is.
ORVEX_C_API orvex_result orvex_view_get_info(orvex_view view, orvex_view_info* info);
/// Takes another size, and loses what was drawn. On failure it is as it was.
/// @param width,height  as at the beginning
ORVEX_C_API orvex_result orvex_view_resize(orvex_view view, int32_t width, int32_t height);
/// What lies behind the models.
/// @param color  four numbers: red, green, blue and opacity, each 0 to 1. Pictures keep the
///               opacity, with straight alpha
ORVEX_C_API orvex_result orvex_view_set_background(orvex_view view, const float* color);

/// How many looks the library has itself. Needs no engine; any thread.
ORVEX_C_API orvex_result orvex_look_count(size_t* count);
/// The name of one: "lit" (two lights and a sky), "matcap" (clay), "normals", "plain" (colours
/// without light) and "wire" (edges) are among them. Needs no engine; any thread.
/// @param index      from 0, below their count
/// @param[out] name  valid for ever
ORVEX_C_API orvex_result orvex_look_name(size_t index, const char** name);
/// Has models look otherwise. On failure they look as before.
/// @param name  of one of the library's own looks
ORVEX_C_API orvex_result orvex_view_set_look(orvex_view view, const char* name);
/// The same by a host's own program, from a file or a text as the guide's page on looks tells.
/// @param path  of the file; null if the text is given
/// @param text  the program; null if the path is given
/// @return `ORVEX_ERROR_LOOK` with what the compiler says, `ORVEX_ERROR_FILE` where it can't be
///         read
ORVEX_C_API orvex_result orvex_view_set_look_source(orvex_view view, const char* path,
                                                    const char* text);
/// @}

/// @name Models
/// @{

/// A model from a file, or a mesh of the caller's numbers: both are drawn, told of and picked from
/// alike.
typedef struct orvex_model_handle* orvex_model;

/// Where the normals of a model come from.
typedef int32_t orvex_normals;
enum {
    ORVEX_NORMALS_AS_GIVEN = 0, ///< by the file or the caller, and those of the faces where they
                                ///< are missing; smooth for 3DS files, which hold none, unless
                                ///< their shape is angular
    ORVEX_NORMALS_FILE = 1,     ///< by the file or the caller in any case
    ORVEX_NORMALS_SMOOTH = 2,   ///< the mean of the faces around a vertex
    ORVEX_NORMALS_FLAT = 3      ///< that of each face
};

/// What a model is loaded with.
typedef struct orvex_model_options {
    size_t size;           ///< of this record
    orvex_normals normals; ///< where they come from
    int32_t allow_outside; ///< 1: textures may lie outside the model's folder, wherever its file
                           ///< says. A file that somebody else made could then name any picture of
                           ///< the system
    const char* loader;    ///< the name of the loader's plugin; null for whichever reads the file
} orvex_model_options;

/// Loads a file, with the textures that its materials name. Needs no view.
/// @param path        of the model; its material libraries are looked for beside it
/// @param options     null for the defaults
/// @param[out] model  receives it; null on failure
/// @return `ORVEX_ERROR_FILE` where it can't be read or no loader reads it: the sentence begins
///         with its name. A texture that is missing is no failure: `orvex_model_get_texture` tells
ORVEX_C_API orvex_result orvex_model_load(orvex_engine engine, const char* path,
                                          const orvex_model_options* options, orvex_model* model);
/// Ends a model, from a file or from numbers, with what it has on the GPU.
ORVEX_C_API orvex_result orvex_model_destroy(orvex_model model);

/// What a model holds. Strings here and below are the model's, valid until it ends or is updated.
typedef struct orvex_model_info {
    size_t size;                ///< of this record
    const char* loader;         ///< the name of the loader's plugin; empty for a mesh
    orvex_up_axis file_up_axis; ///< of the file; y for a mesh
    orvex_up_axis up_axis;      ///< as the model stands
    size_t mesh_count;          ///< for `orvex_model_get_mesh`
    size_t material_count;      ///< for `orvex_model_get_material`
    size_t texture_count;       ///< for `orvex_model_get_texture`
    size_t note_count;          ///< for `orvex_model_get_note`
    size_t file_count;          ///< for `orvex_model_get_file`
    size_t vertex_count;        ///< of all meshes
    size_t face_count;          ///< of all meshes: triangles
    size_t point_count;         ///< of clouds, and vertices of meshes without faces
    float bounds_min[3];        ///< of a box around all vertices in the model's own space; all 0
                                ///< without any
    float bounds_max[3];        ///< likewise
} orvex_model_info;

/// A mesh of a model, at one of the places where it stands.
typedef struct orvex_mesh_info {
    size_t size;         ///< of this record
    const char* name;    ///< in the bytes of the file
    size_t vertex_count; ///< all that it has
    size_t face_count;   ///< triangles; without one its vertices are points
    float bounds_min[3]; ///< of a box in the model's own space; all 0 around nothing
    float bounds_max[3]; ///< likewise
} orvex_mesh_info;

/// A material of a model. Colours are red, green, blue and alpha, mostly 0 to 1, as the file has
/// them.
typedef struct orvex_material_info {
    size_t size;            ///< of this record
    const char* name;       ///< in the bytes of the file
    float ambient[4];       ///< red, green, blue, alpha
    float diffuse[4];       ///< likewise
    float specular[4];      ///< likewise
    float shininess;        ///< exponent of the highlight
    float opacity;          ///< below 1 it is blended
    const size_t* textures; ///< those named by it, for `orvex_model_get_texture`; the model's,
                            ///< valid as strings are
    size_t texture_count;   ///< of those
} orvex_material_info;

/// A texture that materials name.
typedef struct orvex_texture_info {
    size_t size;        ///< of this record
    const char* name;   ///< as it is named, in the bytes of the file
    const char* path;   ///< of the file that was found; else where it was looked for first
    const char* reason; ///< why the picture lacks it; empty if it was found and read
    int32_t width;      ///< pixels; 0 without a picture
    int32_t height;     ///< as `width`
} orvex_texture_info;

/// Tells what it holds.
ORVEX_C_API orvex_result orvex_model_get_info(orvex_model model, orvex_model_info* info);
/// Tells of a mesh. @param index  from 0, below their count; ids of objects count likewise
ORVEX_C_API orvex_result orvex_model_get_mesh(orvex_model model, size_t index,
                                              orvex_mesh_info* info);
/// Tells of a material. @param index  from 0, below their count; ids of materials count likewise
ORVEX_C_API orvex_result orvex_model_get_material(orvex_model model, size_t index,
                                                  orvex_material_info* info);
/// Tells of a texture, found or missing. @param index  from 0, below their count
ORVEX_C_API orvex_result orvex_model_get_texture(orvex_model model, size_t index,
                                                 orvex_texture_info* info);
/// A sentence about what is odd, as that no face has an area, or what the loader left out.
/// @param index      from 0, below their count
/// @param[out] note  the model's, valid as said above
ORVEX_C_API orvex_result orvex_model_get_note(orvex_model model, size_t index, const char** note);
/// A file that it was read from, or that was looked for: the first is the model itself.
/// @param index      from 0, below their count
/// @param[out] path  the model's, valid as said above
ORVEX_C_API orvex_result orvex_model_get_file(orvex_model model, size_t index, const char** path);

/// The box around a model as it stands in the world. Looks at every vertex.
/// @param[out] min,max   three numbers each; NaN around nothing
ORVEX_C_API orvex_result orvex_model_get_extent(orvex_model model, double* min, double* max);
/// Turns a model from a file so that y is its way up, where it wasn't.
ORVEX_C_API orvex_result orvex_model_stand_up(orvex_model model);
/// Places a model in the world, whatever it was before. Uneven scales bend its normals.
/// @param matrix  16 finite numbers, column by column as the engine and OpenGL keep them: element
///                row r, column c is `matrix[c * 4 + r]`, and 12 to 14 are the translation; its
///                last row is 0 0 0 1. Null for the place where it was at first
ORVEX_C_API orvex_result orvex_model_set_transform(orvex_model model, const float* matrix);
/// @}

/// @name Pictures
/// @{

/// Pixels of the caller's.
typedef struct orvex_picture {
    size_t size;         ///< of this record
    int32_t width;       ///< pixels, from 1 to 65535
    int32_t height;      ///< likewise
    int32_t channels;    ///< a pixel, 1 to 4: grey, grey and alpha, RGB, RGBA; 0 for 4
    orvex_type type;     ///< U8 by default; U16, F32, I32
    const void* rows;    ///< the pixels of the row on top
    ptrdiff_t row_bytes; ///< from one row to the next below it, also negative; 0 for no gaps
    const char* name;    ///< of a layer in a file of several; null for the one that is shown first
    const char* letters; ///< of its channels there, one each, as "XYZ"; null for Y, YA, RGB, RGBA
} orvex_picture;

/// How a picture is written.
typedef struct orvex_write_options {
    size_t size;          ///< of this record
    const char* format;   ///< "png", "jpeg", "npy", "exr", "raw" or "y4m"; null for what the suffix
                          ///< of the path stands for
    int32_t jpeg_quality; ///< 1 to 100; 0 for 90
    int32_t reserved;     ///< 0
} orvex_write_options;

/// Writes a picture, whole or not at all. The path "-" is standard output. Needs no engine; any
/// thread.
/// @param options  null for the defaults
/// @return `ORVEX_ERROR_FILE` where it can't be written, with the file's name: what stood there
///         stays
ORVEX_C_API orvex_result orvex_picture_write(const orvex_picture* picture, const char* path,
                                             const orvex_write_options* options);
/// Writes pictures of one size as the layers of one OpenEXR file, by their names.
/// @param pictures  so many in a row, all of the size that the first one has in its `size`
/// @return as `orvex_picture_write`
ORVEX_C_API orvex_result orvex_picture_write_layers(const orvex_picture* pictures, size_t count,
                                                    const char* path,
                                                    const orvex_write_options* options);
/// Whether this build writes a format. Needs no engine; any thread.
/// @param format    as in `orvex_write_options`
/// @param[out] can  receives 1 or 0, which it is for any other word, too
ORVEX_C_API orvex_result orvex_picture_can_write(const char* format, int32_t* can);
/// @}

/// @name Meshes
/// @{

/// A mesh of the caller's numbers, which are copied into buffers of the engine's during the call.
typedef struct orvex_mesh_data {
    size_t size;           ///< of this record
    size_t vertex_count;   ///< of each array of vertices
    orvex_array positions; ///< F32 by default, or F64; 3 numbers
    orvex_array normals;   ///< likewise, of any length; without, those of `shading`
    orvex_array texcoords; ///< F32 by default, or F64; 2 numbers, (0, 0) is the texture's lower
                           ///< left corner
    orvex_array colors;    ///< F32 by default, or F64, 0 to 1; U8, 0 to 255; 4 numbers by default,
                           ///< or 3: red, green, blue, alpha. Colours of vertices don't blend
    size_t face_count;     ///< triangles; with no faces given, every three vertices are one
    orvex_array faces;     ///< U32 by default, or U8, U16, I32, I64; 3 numbers: vertices from 0,
                           ///< counterclockwise as seen from outside
    orvex_normals shading; ///< where normals come from
    float color[4];        ///< of all: red, green, blue, and opacity, below 1 it is blended; all 0
                           ///< for the library's own grey, or white beneath colours or a texture
    const orvex_picture* texture; ///< U8; null for none
    const char* name;             ///< of the mesh; null for none
} orvex_mesh_data;

/// Makes a model of one mesh.
/// @param data        with positions
/// @param[out] model  receives it; null on failure
/// @return `ORVEX_ERROR_ARGUMENT` for an array without data or of another type, for a face that
///         names a vertex which isn't there, for a number that isn't finite as a float, and for
///         counts beyond what a GPU takes (2^31 - 1)
ORVEX_C_API orvex_result orvex_mesh_create(orvex_engine engine, const orvex_mesh_data* data,
                                           orvex_model* model);
/// Gives it other numbers. What is null or 0 in `data`, and an array without data, stays as it is;
/// so does the place in the world. Where `vertex_count` is another, the numbers of the old vertices
/// and the faces are gone: positions have to be given, and whatever else is to be there.
/// @param model  that `orvex_mesh_create` made
/// @return as `orvex_mesh_create`: the mesh is as before then
ORVEX_C_API orvex_result orvex_mesh_update(orvex_model model, const orvex_mesh_data* data);
/// @}

/// @name Cameras
/// A camera is a record of the caller's: to be filled in by hand or by the operations below, copied
/// and changed. None of them needs an engine but those that are handed models, and any thread may
/// call them.
/// @{

/// How a camera stands.
typedef int32_t orvex_stand;
enum {
    ORVEX_STAND_LOOK_AT = 0, ///< by `eye`, `target` and `up`
    ORVEX_STAND_POSE = 1     ///< by `pose`
};

/// How a camera sees.
typedef int32_t orvex_lens;
enum {
    ORVEX_LENS_OPENING = 0,    ///< in perspective, by `fov`, with the middle straight ahead
    ORVEX_LENS_INTRINSICS = 1, ///< as a measured camera does, by `intrinsics`, which hold for
                               ///< pictures of the size that they were measured on
    ORVEX_LENS_PARALLEL = 2    ///< without perspective, by `height`
};

/// From where a scene is seen, and how. The world is right-handed.
typedef struct orvex_camera {
    size_t size;          ///< of this record
    orvex_stand stand;    ///< which of the next ones count
    orvex_lens lens;      ///< which of those behind them count
    double eye[3];        ///< where it stands
    double target[3];     ///< what it looks at, apart from the eye
    double up[3];         ///< what is upward in the picture, of any length; all 0 for y. Where the
                          ///< camera looks that way another axis takes its place
    double pose[16];      ///< from the world to the camera, row by row as computer vision writes
                          ///< it: x to the right of the picture, y down, z into the scene; its left
                          ///< three columns turn, the last row is 0 0 0 1
    double fov;           ///< from the lower to the upper edge, above 0, below 180; 0 for 35
    double intrinsics[9]; ///< row by row: fx, skew, cx; 0, fy, cy; 0, 0, 1, all in pixels
    double height;        ///< of what the picture shows, above 0
    double near_plane;    ///< what is nearer isn't seen, along the viewing axis. Both 0: right
                          ///< before and behind all that is drawn, for which every draw looks at
                          ///< every vertex
    double far_plane;     ///< what is farther isn't seen; above `near_plane`
    double light_azimuth; ///< from where lights come: as `orvex_orbit.azimuth`
    orvex_up_axis light_up; ///< around which axis; automatic: the lights go with the eye, and
                            ///< `light_azimuth` isn't read
    int32_t reserved;       ///< 0
} orvex_camera;

/// Stands at a point and looks at another, in perspective.
/// @param eye,target   three numbers each
/// @param up           three numbers, or null for y
/// @param fov          as in `orvex_camera`
/// @param[out] camera  with its `size` set; receives it. Its planes are automatic
ORVEX_C_API orvex_result orvex_camera_look_at(const double* eye, const double* target,
                                              const double* up, double fov, orvex_camera* camera);
/// Stands and sees as a measured camera.
/// @param intrinsics   nine numbers, as in `orvex_camera`
/// @param pose         sixteen numbers, as in `orvex_camera`
/// @param[out] camera  as `orvex_camera_look_at`
ORVEX_C_API orvex_result orvex_camera_measured(const double* intrinsics, const double* pose,
                                               orvex_camera* camera);

/// From how far models are seen.
typedef int32_t orvex_aim;
enum {
    ORVEX_AIM_TIGHT = 0,  ///< the nearest place from which all is seen, with a little room around
    ORVEX_AIM_MIDDLE = 1, ///< the same, and it looks at the middle of the models' box
    ORVEX_AIM_TURN = 2    ///< the same for every azimuth, so that a turn doesn't breathe
};

/// From where models are seen, as a whole.
typedef struct orvex_orbit {
    size_t size;      ///< of this record
    double azimuth;   ///< around the up axis, from the front to the right
    double elevation; ///< above the horizon
    orvex_up_axis up; ///< automatic: that of the first model
    orvex_aim aim;    ///< from how far
    double zoom;      ///< magnification, above 0; 0 for 1, an opening of 35 degrees
    double distance;  ///< in parts of that of the aim, above 0; 0 for 1
} orvex_orbit;

/// Looks at models so that all of them are seen.
/// @param models        so many, with the same thread as for drawing
/// @param width,height  of the picture, in pixels, from 1
/// @param orbit         null for a little from the right and from above: azimuth 25, elevation 20
/// @param[out] camera   as `orvex_camera_look_at`; its planes lie right before and behind the
///                      models, and its lights go with it
ORVEX_C_API orvex_result orvex_camera_orbit(const orvex_model* models, size_t count, int32_t width,
                                            int32_t height, const orvex_orbit* orbit,
                                            orvex_camera* camera);
/// Puts the planes of a camera right before and behind models. Those of a camera that has all of
/// them behind are 0.1 and 1000 then.
/// @param models  so many, with the same thread as for drawing
ORVEX_C_API orvex_result orvex_camera_fit(orvex_camera* camera, const orvex_model* models,
                                          size_t count);

/// The matrix from the camera to the pixels of a picture.
/// @param width,height     of the picture, in pixels, from 1
/// @param[out] intrinsics  nine numbers, as in `orvex_camera`; pixels have their middles at half
///                         integers, so that cx of the middle is half the width
/// @return `ORVEX_ERROR_ARGUMENT` for a camera without perspective, which has none
ORVEX_C_API orvex_result orvex_camera_matrix(const orvex_camera* camera, int32_t width,
                                             int32_t height, double* intrinsics);
/// The matrix from the world to the camera.
/// @param[out] pose  sixteen numbers, as in `orvex_camera`
ORVEX_C_API orvex_result orvex_camera_pose(const orvex_camera* camera, double* pose);
/// Where points are seen, within the picture or not.
/// @param width,height  of the picture, in pixels, from 1
/// @param points        three numbers each, in the world
/// @param count         of the points
/// @param[out] seen     three numbers each: x from the left edge and y from the upper one in
///                      pixels, and the depth along the viewing axis; all NaN for a point that
///                      isn't before the eye
ORVEX_C_API orvex_result orvex_camera_project(const orvex_camera* camera, int32_t width,
                                              int32_t height, const double* points, size_t count,
                                              double* seen);
/// The ray through a place of a picture.
/// @param width,height    of the picture, in pixels, from 1
/// @param x,y             from the upper left corner; 0.5 is the middle of the first pixel
/// @param[out] origin     three numbers: the eye, or without perspective a place beside it
/// @param[out] direction  three numbers, of length 1
ORVEX_C_API orvex_result orvex_camera_ray(const orvex_camera* camera, int32_t width, int32_t height,
                                          double x, double y, double* origin, double* direction);
/// @}

/// @name Drawing
/// @{

/// Draws a frame: the background, and models in their order. The picture stays in the view until
/// the next frame, to be written over by texts, read and written to files.
/// @param models  so many; may be null for none
ORVEX_C_API orvex_result orvex_view_draw(orvex_view view, const orvex_camera* camera,
                                         const orvex_model* models, size_t count);
/// Reads the picture into the caller's memory: four `uint8_t` a pixel, red, green, blue and
/// straight alpha, which is full where the background is opaque.
/// @param rows       the pixels of the row on top
/// @param row_bytes  from one row to the next below it; negative where they lie the other way
///                   round. 0 for no gaps; what lies between rows stays
ORVEX_C_API orvex_result orvex_view_read(orvex_view view, void* rows, ptrdiff_t row_bytes);
/// Writes that picture as `orvex_picture_write` does; without alpha where the background is opaque.
/// @param options  null for the defaults
ORVEX_C_API orvex_result orvex_view_write(orvex_view view, const char* path,
                                          const orvex_write_options* options);

/// What is told of the nearest surface in each pixel, opaque or not.
typedef int32_t orvex_layer;
enum {
    ORVEX_LAYER_COLOR = 0,    ///< four U8: the picture, with straight alpha
    ORVEX_LAYER_DEPTH = 1,    ///< one F32: before the eye, along the viewing axis; infinity where
                              ///< nothing is
    ORVEX_LAYER_NORMAL = 2,   ///< three F32: of length 1, on the side that is seen; 0 where nothing
                              ///< is
    ORVEX_LAYER_POSITION = 3, ///< three F32; NaN where nothing is
    ORVEX_LAYER_OBJECT = 4,   ///< one I32: the mesh, as `orvex_model_get_mesh` counts, and on from
                              ///< one model to the next; -1 where nothing is
    ORVEX_LAYER_MATERIAL = 5, ///< likewise, as `orvex_model_get_material` counts; -1 also for a
                              ///< face without one
    ORVEX_LAYER_FACE = 6      ///< likewise, in its mesh; -1 where nothing is
};

/// What a layer is made of.
typedef struct orvex_layer_info {
    size_t size;      ///< of this record
    const char* name; ///< "color", "depth", "normal", "position", "object", "material" or "face";
                      ///< valid for ever
    int32_t channels; ///< numbers a pixel
    orvex_type type;  ///< of each
} orvex_layer_info;

/// Tells what a layer is made of. Needs no engine; any thread.
ORVEX_C_API orvex_result orvex_layer_get_info(orvex_layer layer, orvex_layer_info* info);
/// The layer of a name. Needs no engine; any thread.
/// @param[out] layer  receives it; stays for a name that there isn't, which is an
///                    `ORVEX_ERROR_ARGUMENT`
ORVEX_C_API orvex_result orvex_layer_named(const char* name, orvex_layer* layer);

/// Memory of the caller's for one layer, in the size of the view. It has no size, as it never
/// grows.
typedef struct orvex_plane {
    orvex_layer layer;   ///< which
    int32_t reserved;    ///< 0
    void* rows;          ///< the pixels of the row on top
    ptrdiff_t row_bytes; ///< from one row to the next below it, as in `orvex_view_read`; a multiple
                         ///< of a number's size; 0 for no gaps
} orvex_plane;

/// Where normals and positions are told.
typedef int32_t orvex_space;
enum {
    ORVEX_SPACE_WORLD = 0, ///< that of the models' transforms
    ORVEX_SPACE_CAMERA = 1 ///< that of `orvex_camera.pose`
};

/// How layers are drawn.
typedef struct orvex_layer_options {
    size_t size;       ///< of this record
    orvex_space space; ///< of normals and positions
    int32_t reserved;  ///< 0
} orvex_layer_options;

/// Draws layers of models straight into the caller's memory. The colours are drawn as a frame of
/// the view; all other layers come from one sample in the middle of each pixel, and from faces
/// alone: the points of clouds aren't in them.
/// @param models      so many; may be null for none
/// @param planes      in any order, each layer as often as wanted
/// @param options     null for the defaults
/// @return `ORVEX_ERROR_DRIVER` where the driver hasn't got what it takes: floats in textures, and
///         on path gl2 the shading language 1.50. Planes may hold anything then
ORVEX_C_API orvex_result orvex_view_draw_layers(orvex_view view, const orvex_camera* camera,
                                                const orvex_model* models, size_t count,
                                                const orvex_plane* planes, size_t plane_count,
                                                const orvex_layer_options* options);
/// @}

/// @name Picking
/// @{

/// What a ray meets first.
typedef struct orvex_pick {
    size_t size;           ///< of this record
    int32_t hit;           ///< 1, or 0 where it meets nothing: all else is 0 then
    int32_t material;      ///< of the model's; -1 for none
    size_t model;          ///< among those that were asked
    size_t mesh;           ///< of the model's
    size_t face;           ///< of the mesh's
    size_t object;         ///< the mesh, counted on from one model to the next as the layer does
    double barycentric[3]; ///< shares of the face's corners; each 0 to 1, together 1
    double distance;       ///< from the ray's origin, in lengths of its direction
    double point[3];       ///< in the world
} orvex_pick;

/// Asks models for the nearest face that a ray meets, from either side. The first call for a model
/// looks at every face; later ones look at few. `orvex_camera_ray` gives the ray of a place of a
/// picture.
/// @param models     so many
/// @param origin     three numbers, in the world
/// @param direction  three numbers, of any length but 0
/// @param[out] pick  with its `size` set; receives what was met. To meet nothing is no failure
ORVEX_C_API orvex_result orvex_pick_ray(const orvex_model* models, size_t count,
                                        const double* origin, const double* direction,
                                        orvex_pick* pick);
/// @}

/// @name Text
/// @{

/// A font of a view, with texts to be drawn over its picture.
typedef struct orvex_text_handle* orvex_text;

/// Where the lines of a text begin and end.
typedef int32_t orvex_align;
enum {
    ORVEX_ALIGN_LEFT = 0,   ///< they begin below each other
    ORVEX_ALIGN_CENTER = 1, ///< their middles lie below each other
    ORVEX_ALIGN_RIGHT = 2   ///< they end below each other
};

/// How a text is set.
typedef struct orvex_text_style {
    size_t size;        ///< of this record
    float line_height;  ///< pixels; 0 for 24
    float color[4];     ///< red, green, blue and opacity, 0 to 1; all 0 for white
    orvex_align align;  ///< within the wrap width, or the longest line
    float wrap_width;   ///< pixels, where longer lines break; 0 for none
    float line_spacing; ///< from line to line, in heights of a line; 0 for 1
} orvex_text_style;

/// What room a text takes.
typedef struct orvex_text_extent {
    size_t size;           ///< of this record
    float width;           ///< of the longest line, in pixels
    float height;          ///< of all lines, in pixels
    size_t line_count;     ///< after wrapping
    size_t invalid_bytes;  ///< that are no UTF-8
    size_t missing_glyphs; ///< code points without one, each counted once
} orvex_text_extent;

/// Makes a font ready to be drawn with.
/// @param font       the path of a BMFont XML file with its sheet beside it; null for DejaVu Sans,
///                   with Latin, Greek and Cyrillic
/// @param[out] text  receives it; null on failure
ORVEX_C_API orvex_result orvex_text_create(orvex_view view, const char* font, orvex_text* text);
/// Ends it.
ORVEX_C_API orvex_result orvex_text_destroy(orvex_text text);
/// Adds a text to what is drawn next.
/// @param string  UTF-8; a line feed begins a line
/// @param x,y     of the upper left corner of its room
/// @param style   null for the defaults
ORVEX_C_API orvex_result orvex_text_add(orvex_text text, const char* string, float x, float y,
                                        const orvex_text_style* style);
/// Draws what was added, in the order of the calls, over the picture of its view, and forgets it.
ORVEX_C_API orvex_result orvex_text_draw(orvex_text text);
/// Tells what room a text takes. @param style  null for the defaults
ORVEX_C_API orvex_result orvex_text_measure(orvex_text text, const char* string,
                                            const orvex_text_style* style,
                                            orvex_text_extent* extent);
/// @}

#ifdef __cplusplus
}
#endif

#endif
