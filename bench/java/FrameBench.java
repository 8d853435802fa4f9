import com.velmira.VKMakeup.Colorimetry;
import com.velmira.VKMakeup.Contrast;
import com.velmira.VKMakeup.Frame;
import com.velmira.VKMakeup.MakeupEngine;
import com.velmira.VKMakeup.Nv21;
import com.velmira.VKMakeup.PixelFormat;
import java.io.ByteArrayInputStream;
import java.io.IOException;
import java.nio.ByteBuffer;

/** Frames of a camera by each of the classes' ways, for the benchmark that calls it. */
public final class FrameBench {
    private static final int RADIUS = 20; // that of arrays

    private final MakeupEngine engine;
    private final int width;
    private final int height;
    private final Frame camera;
    private final Frame screen;
    private final Nv21.Plane[] planes = new Nv21.Plane[3];
    private final byte[] nv21;

    /** Takes memory: luma, then V and U in turns, all rows with the same stride; and RGBA without padding. */
    public FrameBench(ByteBuffer memory, ByteBuffer rgba, int stride, int width, int height, byte[] table)
            throws IOException {
        engine = new MakeupEngine(name -> new ByteArrayInputStream(table));
        engine.setTable(new ByteArrayInputStream(table));
        engine.setThreads(1);
        engine.setContrast(Contrast.ABSOLUTE);
        engine.setRadius(RADIUS);
        this.width = width;
        this.height = height;
        ByteBuffer v = memory.duplicate();
        v.position(stride * height);
        ByteBuffer u = memory.duplicate();
        u.position(stride * height + 1);
        camera = Frame.ofYuv420(memory, stride, u, v, stride, 2, width, height, Colorimetry.BT601_LIMITED);
        screen = Frame.ofPixels(rgba, PixelFormat.RGBA, 4 * width, width, height);
        planes[0] = new Nv21.Plane(memory, stride, 1);
        planes[1] = new Nv21.Plane(u, stride, 2);
        planes[2] = new Nv21.Plane(v, stride, 2);
        nv21 = new byte[Nv21.size(width, height)];
    }

    public void inPlace() {
        engine.process(camera);
    }

    public void toPixels() {
        engine.process(camera, screen);
    }

    public void pack() {
        Nv21.pack(planes[0], planes[1], planes[2], width, height, nv21);
    }

    public void packAndProcess() {
        pack();
        engine.process(nv21, width, height);
    }
}
