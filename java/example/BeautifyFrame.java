import com.velmira.VKMakeup.Colorimetry;
import com.velmira.VKMakeup.Frame;
import com.velmira.VKMakeup.MakeupEngine;
import com.velmira.VKMakeup.PixelFormat;
import java.awt.Graphics2D;
import java.awt.image.BufferedImage;
import java.awt.image.DataBufferByte;
import java.io.File;
import java.io.IOException;
import java.nio.ByteBuffer;
import javax.imageio.ImageIO;

/**
 * Beautifies a picture in the form in which telephones deliver camera frames: three planes of full range in direct
 * buffers, with padded rows and U and V as views of the same memory. Once to pixels, as for a screen, and once in
 * place, in memory of the program's own: a camera's may only be read.
 *
 * <pre>java ... BeautifyFrame IN.png TO_PIXELS.png IN_PLACE.png</pre>
 */
public final class BeautifyFrame {
    private static final int PADDING = 64;

    private BeautifyFrame() {}

    public static void main(String[] arguments) throws IOException {
        if (arguments.length != 3) {
            System.err.println("usage: BeautifyFrame IN.png TO_PIXELS.png IN_PLACE.png");
            System.exit(2);
        }
        BufferedImage picture = ImageIO.read(new File(arguments[0]));
        if (picture == null) {
            throw new IOException(arguments[0] + " is not a picture");
        }
        int width = picture.getWidth();
        int height = picture.getHeight();
        Frame camera = threePlanes(width, height);
        Frame own = threePlanes(width, height);
        Frame screen = Frame.allocatePixels(PixelFormat.BGR, width, height);
        try (MakeupEngine converter = new MakeupEngine(); MakeupEngine engine = new MakeupEngine()) {
            converter.setWhitening(0);
            converter.setSoftening(0); // nothing is beautified: only formats change
            converter.process(pixelsOf(picture), camera);

            engine.process(camera, screen);
            write(screen, arguments[1]);

            converter.process(camera, own);
            engine.process(own);
            converter.process(own, screen);
            write(screen, arguments[2]);
        }
    }

    /** Memory as a camera has it: Y, then V and U in turns, each view of them without what lies outside of it. */
    private static Frame threePlanes(int width, int height) {
        int yStride = width + PADDING;
        int chromaStride = (width + 1) / 2 * 2 + PADDING;
        int ySize = yStride * height;
        int chromaSize = chromaStride * ((height + 1) / 2) - PADDING;
        ByteBuffer memory = ByteBuffer.allocateDirect(ySize + chromaSize);
        ByteBuffer y = view(memory, 0, ySize);
        ByteBuffer v = view(memory, ySize, chromaSize - 1);
        ByteBuffer u = view(memory, ySize + 1, chromaSize - 1);
        return Frame.ofYuv420(y, yStride, u, v, chromaStride, 2, width, height, Colorimetry.JFIF);
    }

    private static ByteBuffer view(ByteBuffer memory, int begin, int size) {
        ByteBuffer view = memory.duplicate();
        view.position(begin);
        view.limit(begin + size);
        return view.slice();
    }

    private static Frame pixelsOf(BufferedImage picture) {
        BufferedImage bgr = new BufferedImage(picture.getWidth(), picture.getHeight(), BufferedImage.TYPE_3BYTE_BGR);
        Graphics2D graphics = bgr.createGraphics();
        graphics.drawImage(picture, 0, 0, null);
        graphics.dispose();
        ByteBuffer heap = ByteBuffer.wrap(((DataBufferByte) bgr.getRaster().getDataBuffer()).getData());
        return Frame.copyOfPixels(heap, PixelFormat.BGR, 3 * bgr.getWidth(), bgr.getWidth(), bgr.getHeight());
    }

    private static void write(Frame bgr, String file) throws IOException {
        BufferedImage picture = new BufferedImage(bgr.width(), bgr.height(), BufferedImage.TYPE_3BYTE_BGR);
        bgr.plane(0).get(((DataBufferByte) picture.getRaster().getDataBuffer()).getData());
        ImageIO.write(picture, "png", new File(file));
        System.out.println("Wrote " + file + ", " + bgr.width() + " x " + bgr.height());
    }
}
