"""Pictures, masks and depth of ten models, for a network to learn from."""

import json
import pathlib
import sys

import numpy
import orvex


def write_example(folder, view, models, camera):
    view.draw(models, camera)
    layers = view.layers("color", "depth", "normal", "object")
    folder.mkdir(parents=True)
    view.save(folder / "color.png")
    for name in ("depth", "normal", "object"):
        numpy.save(folder / f"{name}.npy", layers[name])
    about = {"matrix": camera.matrix(view.size).tolist(), "pose": camera.pose.tolist(),
             "objects": [mesh.name for model in models for mesh in model.meshes]}
    (folder / "about.json").write_text(json.dumps(about))


def write_dataset(files, target, views=4, size=(256, 256)):
    random = numpy.random.default_rng(seed=1)
    with orvex.Engine() as engine, engine.view(*size, samples=4) as view:
        for file in files:
            with engine.load(file) as model:
                for number in range(views):
                    view.background = random.uniform(0, 1, 3)
                    camera = orvex.Camera.orbit(model, azimuth=random.uniform(0, 360),
                                                elevation=random.uniform(-10, 60), aim="middle")
                    write_example(target / pathlib.Path(file).stem / str(number), view, [model],
                                  camera)


if __name__ == "__main__":
    write_dataset(sys.argv[2:], pathlib.Path(sys.argv[1]))
