// Clay on a turntable under a window: a picture of a ball, made here, that is looked up by the way a surface faces.
[Vertex_Shader]
uniform mat4 orvex_ModelViewMatrix;
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec3 eye_position;
OUT vec3 eye_normal;

void main()
{
    eye_position = (orvex_ModelViewMatrix * POSITION).xyz;
    eye_normal = mat3(orvex_ModelViewMatrix) * NORMAL;
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
}
[Pixel_Shader]
uniform vec4 diffuse_color;  // w: opacity
uniform float faceted;       // 1: the normals are those of the faces
IN vec3 eye_position;
IN vec3 eye_normal;

// Toward the eye, whatever side of its face is seen.
vec3 seen_normal()
{
    vec3 face_normal = normalize(cross(dFdx(eye_position), dFdy(eye_position)));
    bool has_normal = faceted < 0.5 && dot(eye_normal, eye_normal) > 0.0;
    vec3 normal = has_normal ? normalize(eye_normal) : face_normal;
    return dot(normal, eye_position) > 0.0 ? -normal : normal;
}

// The ball as it is seen from the front.
vec3 ball(vec3 normal)
{
    float from_window = max(dot(normal, normalize(vec3(-0.5, 0.7, 0.6))), 0.0);
    float from_floor = max(dot(normal, normalize(vec3(0.4, -0.8, 0.3))), 0.0);
    float rim = pow(1.0 - max(normal.z, 0.0), 3.0);
    vec3 clay = mix(vec3(0.23, 0.15, 0.13), vec3(0.80, 0.62, 0.52), from_window);
    clay += vec3(0.10, 0.07, 0.05) * from_floor;
    clay += vec3(0.20, 0.21, 0.24) * rim;
    return clay + vec3(0.28) * pow(from_window, 24.0);
}

void main()
{
    // Off the middle of the picture the eye looks aslant: the ball is turned to it.
    vec3 to_eye = normalize(-eye_position);
    vec3 right = normalize(cross(vec3(0.0, 1.0, 0.0), to_eye));
    vec3 up = cross(to_eye, right);
    vec3 normal = seen_normal();
    COLOR = vec4(ball(vec3(dot(normal, right), dot(normal, up), dot(normal, to_eye))),
                 diffuse_color.a);
}
