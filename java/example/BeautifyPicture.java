import com.velmira.VKMakeup.MakeupEngine;
import com.velmira.VKMakeup.Nv21;
import java.awt.image.BufferedImage;
import java.io.File;
import java.io.IOException;
import javax.imageio.ImageIO;

/**
 * Beautifies a picture as if it were a frame of a camera.
 *
 * <pre>java ... BeautifyPicture IN.png OUT.png [WHITENING 0-100 [SOFTENING 0-1000]]</pre>
 */
public final class BeautifyPicture {
    private BeautifyPicture() {}

    public static void main(String[] arguments) throws IOException {
        if (arguments.length < 2) {
            System.err.println("usage: BeautifyPicture IN.png OUT.png [WHITENING 0-100 [SOFTENING 0-1000]]");
            System.exit(2);
        }
        BufferedImage picture = ImageIO.read(new File(arguments[0]));
        if (picture == null) {
            throw new IOException(arguments[0] + " is not a picture");
        }
        int width = picture.getWidth();
        int height = picture.getHeight();
        byte[] frame = toNv21(picture);
        try (MakeupEngine engine = new MakeupEngine()) {
            if (arguments.length > 2) {
                engine.setWhitening(Integer.parseInt(arguments[2]));
            }
            if (arguments.length > 3) {
                engine.setSoftening(Integer.parseInt(arguments[3]));
            }
            engine.process(frame, width, height);
        }
        ImageIO.write(toPicture(frame, width, height), "png", new File(arguments[1]));
        System.out.println("Wrote " + arguments[1] + ", " + width + " x " + height);
    }

    /** BT.601, limited range, in 1/256 units. The chroma of a pair of columns and rows is that of its first pixel. */
    private static byte[] toNv21(BufferedImage picture) {
        int width = picture.getWidth();
        int height = picture.getHeight();
        byte[] frame = new byte[Nv21.size(width, height)];
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                int rgb = picture.getRGB(x, y);
                int r = rgb >> 16 & 255;
                int g = rgb >> 8 & 255;
                int b = rgb & 255;
                frame[y * width + x] = (byte) (((66 * r + 129 * g + 25 * b + 128) >> 8) + 16);
                if (y % 2 == 0 && x % 2 == 0) {
                    int pair = (height + y / 2) * width + x;
                    frame[pair] = (byte) (((112 * r - 94 * g - 18 * b + 128) >> 8) + 128);
                    if (x + 1 < width) {
                        frame[pair + 1] = (byte) (((-38 * r - 74 * g + 112 * b + 128) >> 8) + 128);
                    }
                }
            }
        }
        return frame;
    }

    private static BufferedImage toPicture(byte[] frame, int width, int height) {
        BufferedImage picture = new BufferedImage(width, height, BufferedImage.TYPE_INT_RGB);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                int pair = (height + y / 2) * width + x / 2 * 2;
                int luma = 298 * ((frame[y * width + x] & 255) - 16);
                int v = (frame[pair] & 255) - 128;
                int u = x / 2 * 2 + 1 < width ? (frame[pair + 1] & 255) - 128 : 0;
                int r = level(luma + 409 * v);
                int g = level(luma - 208 * v - 100 * u);
                int b = level(luma + 516 * u);
                picture.setRGB(x, y, r << 16 | g << 8 | b);
            }
        }
        return picture;
    }

    private static int level(int scaled) {
        return Math.max(0, Math.min(255, (scaled + 128) >> 8));
    }
}
