// The way that a surface faces, as the eye sees it: red to the right, green up, blue toward the eye.
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

void main()
{
    COLOR = vec4(seen_normal() * 0.5 + 0.5, diffuse_color.a);
}
